import os

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class BkParserRecipe(ConanFile):
    name = "bk-parser"
    version = "1.0.0"
    license = "MIT"
    description = "Structured documents in memory, and their text, binary, enciphered and archive forms"
    package_type = "library"
    settings = "os", "compiler", "build_type", "arch"
    options = {"shared": [True, False], "fPIC": [True, False], "tools": [True, False]}
    default_options = {"shared": True, "fPIC": True, "tools": False}

    def export_sources(self):
        tree = os.path.join(self.recipe_folder, "..", "..")
        floors = ("core/*", "parser/*", "document/*")
        for pattern in ("CMakeLists.txt", "LICENSE", "*.md", "cmake/*", *floors, "tools/*", "docs/*", "abi/*", "examples/*"):
            copy(self, pattern, src=tree, dst=self.export_sources_folder)

    def config_options(self):
        if self.settings.os == "Windows":
            del self.options.fPIC

    def configure(self):
        if self.options.shared:
            self.options.rm_safe("fPIC")

    def layout(self):
        cmake_layout(self)

    def requirements(self):
        if self.options.tools:
            self.requires("cli11/[>=2.1]")

    def validate(self):
        check_min_cppstd(self, 20)
        if self.settings.arch in ("x86", "armv6", "armv7", "armv7hf"):
            raise ConanInvalidConfiguration("bk_parser is laid out for 64-bit targets")

    def generate(self):
        CMakeDeps(self).generate()
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["BK_PARSER_TESTS"] = False
        toolchain.cache_variables["BK_PARSER_EXAMPLES"] = False
        toolchain.cache_variables["BK_PARSER_TOOLS"] = bool(self.options.tools)
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        self.cpp_info.libs = ["bk_parser"]
        self.cpp_info.includedirs = ["include/bk_parser"]
        self.cpp_info.set_property("cmake_file_name", "bk_parser")
        self.cpp_info.set_property("cmake_target_name", "bk_parser::bk_parser")
        self.cpp_info.set_property("pkg_config_name", "bk_parser")
        if not self.options.shared:
            self.cpp_info.defines = ["BK_PARSER_STATIC"]
