#include "core/core_base_object.h"
#include "core/core_log.h"
#include "parser/parser_file.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

/// A host's class that gives its own name.
class HostObject : public CoreBaseObject {
public:
    explicit HostObject(bool* destroyed = nullptr) : destroyed_(destroyed) {}
    ~HostObject() override {
        if (destroyed_ != nullptr) {
            *destroyed_ = true;
        }
    }
    static const CoreClassInfo& info() {
        static const CoreClassInfo result("HostObject", &CoreBaseObject().get_class_info());
        return result;
    }
    const CoreClassInfo& get_class_info() const override { return info(); }

private:
    bool* destroyed_;
};

TEST(core_base_object, the_root_class_has_no_base) {
    const CoreBaseObject object;
    EXPECT_EQ(object.get_class_info().get_base(), nullptr);
    EXPECT_EQ(std::string(object.get_class_info().get_name()), "CoreBaseObject");
    EXPECT_EQ(&object.get_class_info(), &CoreBaseObject().get_class_info());
}

TEST(core_base_object, an_object_is_of_its_own_class_and_of_those_it_derives_from) {
    const HostObject object;
    const CoreBaseObject root;
    EXPECT_TRUE(object.is_kindof(HostObject::info()));
    EXPECT_TRUE(object.is_kindof(root.get_class_info()));
    EXPECT_TRUE(root.is_kindof(root.get_class_info()));
}

TEST(core_base_object, an_object_is_of_no_other_class) {
    const CoreClassInfo unrelated("HostObject");
    EXPECT_FALSE(HostObject().is_kindof(unrelated));
    EXPECT_FALSE(CoreBaseObject().is_kindof(HostObject::info()));
}

TEST(core_base_object, an_object_is_destroyed_through_the_root_class) {
    bool destroyed = false;
    CoreBaseObject* object = new HostObject(&destroyed);
    delete object;
    EXPECT_TRUE(destroyed);
}

TEST(core_base_object, streams_handlers_and_files_inherit_the_class_operations) {
    static_assert(std::is_base_of_v<CoreBaseObject, CoreLogStream>);
    static_assert(std::is_base_of_v<CoreBaseObject, CoreLogHandler>);
    static_assert(std::is_base_of_v<CoreBaseObject, ParserFile>);
    EXPECT_TRUE(CoreLogStream().is_kindof(CoreBaseObject().get_class_info()));
    EXPECT_TRUE(CoreLogHandler().is_kindof(CoreBaseObject().get_class_info()));
}

} // namespace
