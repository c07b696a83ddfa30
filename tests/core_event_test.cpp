#include "core/core_event.h"
#include "parser/parser_file.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

namespace {

// A second implementation on purpose: the library computes its hashes at compile time.
std::uint32_t one_at_a_time(const std::string& text) {
    std::uint32_t hash = 0;
    for (const char character : text) {
        hash += static_cast<unsigned char>(character);
        hash += hash << 10;
        hash ^= hash >> 6;
    }
    hash += hash << 3;
    hash ^= hash >> 11;
    hash += hash << 15;
    return hash;
}

const char* const event_names[] = {"EVT_ID_APPLICATION_AOV_FILE_PATH_CHANGED",
                                   "EVT_ID_APPLICATION_AOV_FILE_USE_CHANGED",
                                   "EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED",
                                   "EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED",
                                   "EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED",
                                   "EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED",
                                   "EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED",
                                   "EVT_ID_APPLICATION_COMBINER_PIVOT_CHANGED",
                                   "EVT_ID_APPLICATION_CURVE_SIZE_MODE_CHANGE",
                                   "EVT_ID_APPLICATION_DISPLACEMENT_STORAGE_MODE_CHANGED",
                                   "EVT_ID_APPLICATION_EVALUATION_ENDED",
                                   "EVT_ID_APPLICATION_EVALUATION_INTERRUPTED",
                                   "EVT_ID_APPLICATION_EVALUATION_STARTED",
                                   "EVT_ID_APPLICATION_GIZMO_SIZE_CHANGE",
                                   "EVT_ID_APPLICATION_IDLE",
                                   "EVT_ID_APPLICATION_IMPORT_VARIABLES_MODE_CHANGED",
                                   "EVT_ID_APPLICATION_MODULES_LOADED",
                                   "EVT_ID_APPLICATION_MOTION_BLUR_CHANGED",
                                   "EVT_ID_APPLICATION_OPENVDB_CHANGED",
                                   "EVT_ID_APPLICATION_PRE_EVALUATION_START",
                                   "EVT_ID_APPLICATION_PROGRESS_BARS_CHANGED",
                                   "EVT_ID_APPLICATION_RES_PRESET_FILE_PATH_CHANGED",
                                   "EVT_ID_APPLICATION_RES_PRESET_FILE_USE_CHANGED",
                                   "EVT_ID_APPLICATION_SHELF_SIZE_CHANGE",
                                   "EVT_ID_APPLICATION_TEXTURE_CACHE_CHANGED",
                                   "EVT_ID_APPLICATION_TIMELINE_KF_DISPLAY_CHANGED",
                                   "EVT_ID_DESTROY",
                                   "EVT_ID_GEOMETRY_SUBDIVISION_MODE_CHANGED",
                                   "EVT_ID_GEOMETRY_VISIBILITY_MODE_CHANGED",
                                   "EVT_ID_PROJECTION_MASTER_EYE_CHANGED"};

unsigned int registered_by_tests = 0;

bool register_new(unsigned int hash, const char* name) {
    ++registered_by_tests;
    return event_debug_collisions(hash, CoreString(name));
}

// Loading the parser registers the names. A program with the static library links that code as soon as it
// uses anything of the parser.
TEST(core_event, the_default_serial_version_is_set_when_the_library_is_loaded) {
    EXPECT_EQ(default_parser_serial_version.get_value(), 1.2);
}

TEST(core_event, the_thirty_names_of_the_host_are_registered_with_their_hashes) {
    std::set<std::uint32_t> hashes;
    for (const char* name : event_names) {
        EXPECT_EQ(plain(event_get_name(one_at_a_time(name))), name);
        hashes.insert(one_at_a_time(name));
    }
    EXPECT_EQ(hashes.size(), 30u);
}

TEST(core_event, nothing_else_is_registered_when_the_library_is_loaded) {
    EXPECT_EQ(event_get_count() - registered_by_tests, 30u);
}

TEST(core_event, the_library_reserved_its_hashes_so_that_another_name_collides) {
    for (const char* name : event_names) {
        EXPECT_FALSE(event_debug_collisions(one_at_a_time(name), CoreString("EVT_ID_OF_A_MODULE")));
        EXPECT_EQ(plain(event_get_name(one_at_a_time(name))), name);
    }
    EXPECT_EQ(event_get_count() - registered_by_tests, 30u);
}

TEST(core_event, registering_the_same_pair_again_is_no_collision) {
    const unsigned int before = event_get_count();
    EXPECT_TRUE(event_debug_collisions(one_at_a_time("EVT_ID_DESTROY"), CoreString("EVT_ID_DESTROY")));
    EXPECT_EQ(event_get_count(), before);
}

TEST(core_event, a_new_name_under_a_new_hash_is_registered) {
    const unsigned int before = event_get_count();
    EXPECT_TRUE(event_get_name(12345u).is_empty());
    EXPECT_TRUE(register_new(12345u, "EVT_ID_NEW"));
    EXPECT_EQ(event_get_count(), before + 1);
    EXPECT_EQ(plain(event_get_name(12345u)), "EVT_ID_NEW");
    EXPECT_FALSE(event_debug_collisions(12345u, CoreString("EVT_ID_OTHER")));
}

TEST(core_event, the_registry_keeps_a_name_of_its_own) {
    {
        CoreString name("EVT_ID_OF_A_TEXT_THAT_IS_GONE_AFTERWARDS");
        ++registered_by_tests;
        EXPECT_TRUE(event_debug_collisions(54321u, name));
        name.set_data("overwritten");
    }
    EXPECT_EQ(plain(event_get_name(54321u)), "EVT_ID_OF_A_TEXT_THAT_IS_GONE_AFTERWARDS");
}

TEST(core_event, a_thousand_more_names_are_found_again) {
    for (unsigned int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(register_new(0x40000000u + i * 0x10000u, ("EVT_" + std::to_string(i)).c_str()));
    }
    for (unsigned int i = 0; i < 1000; ++i) {
        EXPECT_EQ(plain(event_get_name(0x40000000u + i * 0x10000u)), "EVT_" + std::to_string(i));
    }
}

} // namespace
