#pragma once

class ParserGroup;

namespace bk {

/// Deletes a group that a value owned. Groups are deleted inside each other's destructors down to a fixed depth. Those below wait until the
/// outermost destructor is done, so that the depth of a tree takes no stack. Takes null.
void destroy_group(ParserGroup* group) noexcept;

} // namespace bk
