#include "bench/peers/peer_list.h"

#include <libconfig.h++>

#include <cstdio>
#include <cstdlib>

namespace bench {

namespace {

using libconfig::Setting;

void walk_setting(const Setting& setting, Checksum& sum) {
    switch (setting.getType()) {
    case Setting::TypeBoolean:
        sum.flag(setting);
        break;
    case Setting::TypeInt:
        sum.integer(static_cast<int>(setting));
        break;
    case Setting::TypeFloat:
        sum.decimal(setting);
        break;
    case Setting::TypeString:
        sum.string(setting.c_str());
        break;
    case Setting::TypeGroup:
    case Setting::TypeArray:
    case Setting::TypeList:
        for (int i = 0; i < setting.getLength(); ++i) {
            walk_setting(setting[i], sum);
        }
        break;
    default:
        break;
    }
}

/// Settings cannot be renamed, so it takes no part in the edit.
class Libconfig : public Peer {
public:
    explicit Libconfig(const Source& source) : source_(source) {}

    bool parse() override {
        tree_ = std::make_unique<libconfig::Config>();
        try {
            tree_->readString(source_.text);
        } catch (const libconfig::ParseException&) {
            return false;
        }
        return true;
    }
    Checksum walk() const override {
        Checksum sum;
        walk_setting(tree_->getRoot(), sum);
        return sum;
    }
    /// It writes only to streams; this one is in memory.
    std::size_t print(bool) override {
        std::FILE* const stream = open_memstream(&printed_, &size_);
        tree_->write(stream);
        std::fclose(stream);
        return size_;
    }
    void forget() override {
        std::free(printed_);
        printed_ = nullptr;
    }
    void destroy() override { tree_.reset(); }

private:
    const Source& source_;
    std::unique_ptr<libconfig::Config> tree_;
    char* printed_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace

void add_libconfig(PeerList& peers) {
    peers.push_back({"libconfig++", Form::config, PeerKind::NONE, reads | bit(Operation::print_pretty),
                     make_peer<Libconfig>});
}

} // namespace bench
