#include "core/sys_file.h"

#include "core/files/sys_file_input_impl.h"
#include "core/files/sys_file_output_impl.h"
#include "core/reports/core_guard_impl.h"

#include <algorithm>
#include <limits>
#include <utility>

/// The input or the output behind an open SysFile.
struct SysFile::Stream {
    std::unique_ptr<bk::FileInput> input;
    std::unique_ptr<bk::FileOutput> output;
};

namespace {

constexpr core_int64 smallest_request = 4096;

bool is_usable(std::string_view path) {
    return !path.empty() && path.find('\0') == std::string_view::npos;
}

core_int64 read_text(bk::FileInput& input, CoreString& text, core_int64 wanted) {
    core_int64 have = 0;
    bool whole = true;
    while (whole && have < wanted) {
        const core_int64 part = std::min(wanted - have, std::max(input.left(), smallest_request));
        char* const bytes = text.resize(static_cast<unsigned int>(have + part));
        const std::size_t got = input.read(bytes + have, static_cast<std::size_t>(part));
        have += static_cast<core_int64>(got);
        whole = got == static_cast<std::size_t>(part);
    }
    text.resize(static_cast<unsigned int>(have));
    return have;
}

/// Runs a read or write. When it throws, the file is marked, so that `close` returns false.
template <class Direction, class Action>
core_int64 transfer(const char* operation, Direction& direction, Action action) {
    return bk::guarded(operation, core_int64{0}, [&] {
        try {
            return action();
        } catch (...) {
            direction.fail();
            throw;
        }
    });
}

} // namespace

SysFile::SysFile() = default;

SysFile::~SysFile() {
    const bk::KeptErrno kept;
    stream_.reset();
}

bool SysFile::open(const CoreString& path, const Mode& mode, const Type& type) {
    const bk::KeptErrno kept;
    stream_.reset();
    size_ = 0;
    const bool is_text = type == TYPE_TEXT;
    if (!is_usable(path.get_view()) || (!is_text && type != TYPE_BINARY)) {
        return false;
    }
    return bk::guarded("SysFile.open", false, [&] {
        const std::string name(path.get_view());
        const bool translates_text = is_text && bk::platform_translates_text;
        auto stream = std::make_unique<Stream>();
        if (mode == MODE_READ) {
            stream->input = std::make_unique<bk::FileInput>();
            if (!stream->input->open(name, translates_text)) {
                return false;
            }
            size_ = stream->input->size();
        } else if (mode == MODE_WRITE) {
            stream->output = std::make_unique<bk::FileOutput>();
            if (!stream->output->open(name, translates_text)) {
                return false;
            }
        } else {
            return false;
        }
        stream_ = std::move(stream);
        return true;
    });
}

core_int64 SysFile::read(void* buffer, const core_int64& item_size, const core_int64& count) {
    if (stream_ == nullptr || stream_->input == nullptr || item_size <= 0 || count <= 0 ||
        item_size > std::numeric_limits<core_int64>::max() / count) {
        return 0;
    }
    return transfer("SysFile.read", *stream_->input, [&] {
        const std::size_t size = static_cast<std::size_t>(item_size * count);
        return static_cast<core_int64>(stream_->input->read(static_cast<char*>(buffer), size));
    });
}

core_int64 SysFile::read(CoreString& text, const core_int64& size) {
    text.clear();
    if (stream_ == nullptr || stream_->input == nullptr || size <= 0) {
        return 0;
    }
    return transfer("SysFile.read", *stream_->input, [&] {
        CoreString made;
        const core_int64 read =
            read_text(*stream_->input, made, std::min<core_int64>(size, CoreString::max_length));
        text = std::move(made);
        return read;
    });
}

core_int64 SysFile::write(const char* data, const core_int64& size) {
    if (stream_ == nullptr || stream_->output == nullptr || size <= 0) {
        return 0;
    }
    return transfer("SysFile.write", *stream_->output, [&] {
        return static_cast<core_int64>(stream_->output->write(data, static_cast<std::size_t>(size)));
    });
}

core_int64 SysFile::write(const CoreString& text) {
    return write(text.get_data(), text.get_length());
}

bool SysFile::close() {
    const bk::KeptErrno kept; // restores errno after the stream's destructor
    const std::unique_ptr<Stream> stream = std::move(stream_);
    size_ = 0;
    if (stream == nullptr) {
        return true;
    }
    return bk::guarded("SysFile.close", false, [&] {
        return stream->input != nullptr ? stream->input->close() : stream->output->close();
    });
}
