#pragma once

#include "core/core_export.h"

/// Names a class at run time and links it to the class it derives from (null at the root).
class CoreClassInfo {
public:
    /// Keeps the addresses of `name` and `base`: both must live as long as this object.
    constexpr explicit CoreClassInfo(const char* name, const CoreClassInfo* base = nullptr) noexcept
        : name_(name), base_(base) {}

    /// The name of the class.
    constexpr const char* get_name() const noexcept { return name_; }
    /// The class that it derives from; null for the root.
    constexpr const CoreClassInfo* get_base() const noexcept { return base_; }

private:
    const char* name_;
    const CoreClassInfo* base_;
};

/// The root class of objects that can be asked for their class.
class BK_PARSER_API CoreBaseObject {
public:
    constexpr CoreBaseObject() noexcept = default;
    /// Copies nothing: there is nothing in it.
    CoreBaseObject(const CoreBaseObject&) = default;
    /// Copies nothing: there is nothing in it.
    CoreBaseObject& operator=(const CoreBaseObject&) = default;
    virtual ~CoreBaseObject();

    /// True when this object's class is `info` or derives from it.
    virtual bool is_kindof(const CoreClassInfo& info) const;
    /// The class that the object was made as.
    virtual const CoreClassInfo& get_class_info() const;
};
