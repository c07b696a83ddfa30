#include "parser/model/parser_teardown_impl.h"

#include "core/memory/core_thread_impl.h"
#include "parser/model/parser_group_impl.h"

namespace bk {

namespace {

/// The groups that wait for their deletion on this thread, linked through themselves.
constinit thread_local ParserGroup* doomed BK_TLS_MODEL = nullptr;
constinit thread_local bool is_destroying BK_TLS_MODEL = false;

} // namespace

void destroy_group(ParserGroup* group) noexcept {
    if (group == nullptr) {
        return;
    }
    GroupAccess::next_doomed(*group) = doomed;
    doomed = group;
    if (is_destroying) {
        return;
    }
    is_destroying = true;
    while (doomed != nullptr) {
        ParserGroup* const next = doomed;
        doomed = GroupAccess::next_doomed(*next);
        GroupAccess::forget_source_entry(*next);
        delete next;
    }
    is_destroying = false;
}

} // namespace bk
