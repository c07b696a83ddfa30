#pragma once

class ParserGroup;

namespace bk {

/// Deletes a group that a value owned. Groups die inside each other's destructors down to a fixed depth; those below
/// wait until the outermost one is done, so that the depth of a tree costs no stack. Null is legal.
void destroy_group(ParserGroup* group) noexcept;

} // namespace bk
