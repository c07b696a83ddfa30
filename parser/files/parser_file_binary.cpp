#include "core/reports/core_guard_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/parser_file.h"

namespace {

using bk::binary_tag;
/// Does not test for a buffer that has the tag and only a part of the size: the group's reader refuses that.
constexpr unsigned int least_size = 9;

bool is_known_format(const CoreVector<char>& data) {
    if (data.get_count() < least_size) {
        bk::report_warning("ParserFile.set_binary: data too short\n");
        return false;
    }
    if (std::string_view(data.get_data(), binary_tag.size()) != binary_tag) {
        bk::report_warning("ParserFile.set_binary: Unknown data tag\n");
        return false;
    }
    return true;
}

} // namespace

CoreVector<char> ParserFile::get_binary() const {
    CoreVector<char> out;
    bk::encode(out, "ParserFile.get_binary", [&](bk::BinaryEncoder& encoder) {
        encoder.write_bytes(binary_tag.data(), binary_tag.size());
        encoder.write_group(*root_);
    });
    return out;
}

bool ParserFile::set_binary(const CoreVector<char>& data) {
    if (!is_known_format(data)) {
        bk::report_warning("ParserFile.set_binary: Unknown format\n");
        return false;
    }
    core_uint64 position = binary_tag.size();
    return root_->set_binary(data, position, limits_);
}
