#include "core/core_event.h"
#include "core/core_hash.h"
#include "parser/parser_file.h"

#include <iterator>
#include <string_view>

/// Runs when the library is loaded, before any call into it.

constinit CoreVersion default_parser_serial_version(1.2);

namespace {

/// A name of the host application's events with its hash. The library raises none of them; registering them
/// keeps the host's identifiers apart.
struct EventName {
    std::string_view name;
    unsigned int hash;

    consteval EventName(std::string_view event)
        : name(event), hash(CoreHash::generate_jenkins(event.data(), event.size())) {}
};

constexpr EventName event_names[] = {
    {"EVT_ID_APPLICATION_AOV_FILE_PATH_CHANGED"},
    {"EVT_ID_APPLICATION_AOV_FILE_USE_CHANGED"},
    {"EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED"},
    {"EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED"},
    {"EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED"},
    {"EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED"},
    {"EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED"},
    {"EVT_ID_APPLICATION_COMBINER_PIVOT_CHANGED"},
    {"EVT_ID_APPLICATION_CURVE_SIZE_MODE_CHANGE"},
    {"EVT_ID_APPLICATION_DISPLACEMENT_STORAGE_MODE_CHANGED"},
    {"EVT_ID_APPLICATION_EVALUATION_ENDED"},
    {"EVT_ID_APPLICATION_EVALUATION_INTERRUPTED"},
    {"EVT_ID_APPLICATION_EVALUATION_STARTED"},
    {"EVT_ID_APPLICATION_GIZMO_SIZE_CHANGE"},
    {"EVT_ID_APPLICATION_IDLE"},
    {"EVT_ID_APPLICATION_IMPORT_VARIABLES_MODE_CHANGED"},
    {"EVT_ID_APPLICATION_MODULES_LOADED"},
    {"EVT_ID_APPLICATION_MOTION_BLUR_CHANGED"},
    {"EVT_ID_APPLICATION_OPENVDB_CHANGED"},
    {"EVT_ID_APPLICATION_PRE_EVALUATION_START"},
    {"EVT_ID_APPLICATION_PROGRESS_BARS_CHANGED"},
    {"EVT_ID_APPLICATION_RES_PRESET_FILE_PATH_CHANGED"},
    {"EVT_ID_APPLICATION_RES_PRESET_FILE_USE_CHANGED"},
    {"EVT_ID_APPLICATION_SHELF_SIZE_CHANGE"},
    {"EVT_ID_APPLICATION_TEXTURE_CACHE_CHANGED"},
    {"EVT_ID_APPLICATION_TIMELINE_KF_DISPLAY_CHANGED"},
    {"EVT_ID_DESTROY"},
    {"EVT_ID_GEOMETRY_SUBDIVISION_MODE_CHANGED"},
    {"EVT_ID_GEOMETRY_VISIBILITY_MODE_CHANGED"},
    {"EVT_ID_PROJECTION_MASTER_EYE_CHANGED"},
};
static_assert(std::size(event_names) == 30);

bool register_events() {
    bool are_distinct = true;
    for (const EventName& event : event_names) {
        are_distinct = event_debug_collisions(event.hash, CoreString(event.name)) && are_distinct;
    }
    return are_distinct;
}

[[maybe_unused]] const bool events_are_distinct = register_events();

} // namespace
