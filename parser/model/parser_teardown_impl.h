#pragma once

class ParserGroup;

namespace bk {

/// Deletes a group that a value owned. A group that dies inside another's destructor waits until that one is
/// done, so that the depth of a tree costs no stack. Null is legal.
void destroy_group(ParserGroup* group) noexcept;

} // namespace bk
