"""What `scripts/package` made: what is in it, that other programs can use it, and that it tells nothing of where it was
built.

usage: package_test.py BUILD/PACKAGE

Needs clang-19, lld-19, CMake, mingw-w64 and, to run what it builds, Wine.
"""

import hashlib
import json
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
import zipfile
import zlib

SOURCE = pathlib.Path(__file__).resolve().parents[2]
HOST = SOURCE / "tests" / "package" / "host"
WINE = [] if os.name == "nt" else ["wine"]
VERSION = re.search(r"^project\(Tarnwick VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text(), re.M)[1]
NAME = f"tarnwick-{VERSION}-win-x64"
MINGW = "x86_64-w64-mingw32-"

DOCUMENTS = ["hosting", "outputs", "command-line", "fleet", "packaging", "launchers", "privacy", "what-is-read", "catalogue",
             "explain", "troubleshooting", "log-lines"]

PACKAGE = None


def run(*command, **options):
    result = subprocess.run([str(part) for part in command], capture_output=True, check=False, timeout=300, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command} ended with {result.returncode}:\n{result.stdout.decode(errors='replace')}"
                             f"{result.stderr.decode(errors='replace')}")
    return result.stdout.decode(errors="replace")


def start(program, *arguments):
    """The exit code and the output of a Windows program, through a file: Wine's own processes keep a pipe open."""
    with tempfile.TemporaryFile() as output:
        code = subprocess.run([*WINE, str(program), *arguments], stdout=output, stderr=output, check=False,
                              timeout=120).returncode
        output.seek(0)
        return code, output.read().decode().replace("\r\n", "\n")


def tree(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())


def sources(folder, top):
    """The files of a folder that git knows, or that lie there in a tree without git, below another folder."""
    return [f"{top}/{name}" for name in tree(SOURCE / folder)]


def unpack(name):
    folder = pathlib.Path(tempfile.mkdtemp(prefix="tarnwick "))
    with zipfile.ZipFile(PACKAGE / f"{name}.zip") as archive:
        archive.extractall(folder)
    return folder


class Unpacked(unittest.TestCase):
    """Tests on the two archives, unpacked into one folder as a developer does."""

    @classmethod
    def setUpClass(cls):
        cls.folder = unpack(NAME)
        with zipfile.ZipFile(PACKAGE / f"{NAME}-symbols.zip") as archive:
            archive.extractall(cls.folder)
        cls.work = pathlib.Path(tempfile.mkdtemp())

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)
        shutil.rmtree(cls.work)

    def programs(self):
        return [self.folder / "bin" / name for name in ("Tarnwick.dll", "tarnwick.exe")]


class Contents(unittest.TestCase):
    def test_the_folder_holds_two_archives_their_sums_and_two_layouts(self):
        self.assertEqual(sorted(path.name for path in PACKAGE.iterdir()),
                         sorted(["SHA256SUMS", f"{NAME}-symbols.zip", f"{NAME}.zip", "nuget", "vcpkg"]))

    def test_the_package_holds_what_a_host_needs_and_nothing_else(self):
        share = "share/tarnwick"
        expected = ["bin/Tarnwick.dll", "bin/tarnwick.exe", "bin/MasterGameList.xml", "lib/Tarnwick.lib",
                    "lib/libTarnwick.dll.a", "lib/cmake/Tarnwick/TarnwickConfig.cmake",
                    "lib/cmake/Tarnwick/TarnwickConfigVersion.cmake", f"{share}/LICENSE", f"{share}/CHANGELOG.md",
                    f"{share}/docs/formats/catalogue.md"]
        expected += sources("include/tarnwick", "include/tarnwick")
        expected += sources("docs/schemas", f"{share}/schemas")
        expected += sources("examples/c", f"{share}/examples/c")
        expected += [f"{share}/docs/{page}.md" for page in DOCUMENTS]
        with zipfile.ZipFile(PACKAGE / f"{NAME}.zip") as archive:
            self.assertEqual(archive.namelist(), sorted(expected))

    def test_the_symbols_are_those_of_the_library_and_the_program(self):
        with zipfile.ZipFile(PACKAGE / f"{NAME}-symbols.zip") as archive:
            self.assertEqual(archive.namelist(), ["bin/Tarnwick.dll.debug", "bin/tarnwick.exe.debug"])

    def test_sums_fit(self):
        lines = (PACKAGE / "SHA256SUMS").read_text().splitlines()
        self.assertEqual(lines, [f"{hashlib.sha256((PACKAGE / name).read_bytes()).hexdigest()}  {name}"
                                 for name in (f"{NAME}-symbols.zip", f"{NAME}.zip")])


class Reproducible(Unpacked):
    """What could differ between two builds of one commit. second_build_test.py makes the second build."""

    def test_archives_have_one_time_and_one_owner(self):
        for name in (NAME, f"{NAME}-symbols"):
            with zipfile.ZipFile(PACKAGE / f"{name}.zip") as archive:
                self.assertEqual(len({entry.date_time for entry in archive.infolist()}), 1)
                self.assertEqual({(entry.external_attr >> 16, entry.extra) for entry in archive.infolist()}, {(0o100644, b"")})

    def test_no_program_tells_when_it_was_linked(self):
        for program in self.programs():
            image = program.read_bytes()
            header = struct.unpack_from("<I", image, 0x3C)[0]
            self.assertEqual(struct.unpack_from("<I", image, header + 8)[0], 0, program.name)

    def test_no_file_tells_where_it_was_built(self):
        for path in tree(self.folder):
            self.assertNotIn(str(SOURCE).encode(), (self.folder / path).read_bytes(), path)


class Symbols(Unpacked):
    def test_programs_are_stripped(self):
        for program in self.programs():
            self.assertEqual(run(MINGW + "nm", program).strip(), "", program.name)
            self.assertNotIn(".debug_", run(MINGW + "objdump", "-h", program), program.name)

    def test_each_program_names_its_symbols_and_their_sum(self):
        for program in self.programs():
            section = self.work / "debuglink"
            run(MINGW + "objcopy", "--dump-section", f".gnu_debuglink={section}", program, self.work / "copy")
            symbols = program.with_name(program.name + ".debug")
            self.assertTrue(section.read_bytes().startswith(symbols.name.encode() + b"\0"))
            self.assertEqual(struct.unpack("<I", section.read_bytes()[-4:])[0], zlib.crc32(symbols.read_bytes()))

    def test_symbols_lead_to_a_function_and_a_line(self):
        symbols = self.folder / "bin" / "Tarnwick.dll.debug"
        address = re.search(r"^(\w+) T IA_GetAppsJson$", run(MINGW + "nm", symbols), re.M)[1]
        found = run(MINGW + "addr2line", "-f", "-e", symbols, address)
        self.assertRegex(found, r"^IA_GetAppsJson\n(build/(\S*/)?)?src/inventory/app_exports\.cpp:\d+\n")


class Versions(Unpacked):
    def test_every_place_in_the_sources_has_the_projects_version(self):
        run(SOURCE / "scripts" / "check-version")

    def test_programs_bear_it_as_a_resource(self):
        numbers = [int(part) for part in VERSION.split(".")]
        for program in self.programs():
            image = program.read_bytes()
            fixed = image.index(struct.pack("<I", 0xFEEF04BD))
            low, high = struct.unpack_from("<II", image, fixed + 8)
            self.assertEqual([low >> 16, low & 0xFFFF, high >> 16, high & 0xFFFF], [*numbers, 0], program.name)
            for name in ("FileVersion", "ProductVersion"):
                text = name.encode("utf-16-le") + b"\0\0"
                rest = image[image.index(text, fixed) + len(text):][:64].decode("utf-16-le", "replace").lstrip("\0")
                self.assertEqual(rest.split("\0")[0], VERSION, program.name)

    def test_the_program_says_it(self):
        code, output = start(self.folder / "bin" / "tarnwick.exe", "--version")
        self.assertEqual((code, output), (0, f"tarnwick {VERSION}\n"))

    def test_the_change_log_begins_with_it_or_with_what_is_not_released(self):
        text = (self.folder / "share/tarnwick/CHANGELOG.md").read_text(encoding="utf-8")
        self.assertIn(re.search(r"^## (\S+)", text, re.M)[1], (f"[{VERSION}]", "[Unreleased]"))


class Outside(Unpacked):
    """Tests that build on the package, outside of the tree."""

    def setUp(self):
        self.build = pathlib.Path(tempfile.mkdtemp(dir=self.work))

    def configure(self, *options, system="Windows", source=HOST):
        compilers = [f"-DCMAKE_C_COMPILER={MINGW}gcc-posix", f"-DCMAKE_CXX_COMPILER={MINGW}g++-posix",
                     f"-DCMAKE_RC_COMPILER={MINGW}windres"] if system == "Windows" else []
        return subprocess.run(["cmake", "-G", "Ninja", "-S", source, "-B", self.build, f"-DCMAKE_SYSTEM_NAME={system}",
                               f"-DCMAKE_PREFIX_PATH={self.folder}", *compilers, *options],
                              capture_output=True, text=True, check=False, timeout=120)


class Hosts(Outside):
    def test_a_cmake_project_finds_builds_and_runs(self):
        configured = self.configure(f"-DWANTED_VERSION={VERSION}")
        self.assertEqual(configured.returncode, 0, configured.stderr)
        self.assertIn(f"Tarnwick {VERSION}", configured.stdout)
        run("cmake", "--build", self.build)
        self.assertEqual(start(self.build / "host_c.exe"), (0, f"{VERSION} {VERSION} {{}}\n"))
        code, output = start(self.build / "host_cpp.exe")
        self.assertEqual((code, json.loads(output)["exe"]), (0, "host_cpp.exe"))

    def test_a_version_that_promises_less_is_refused(self):
        major, minor, _ = map(int, VERSION.split("."))
        for wanted in (f"{major + 1}.0", f"{major}.{minor + 1}"):
            self.assertIn("find a configuration file", self.configure(f"-DWANTED_VERSION={wanted}").stderr)

    def test_another_system_is_told_what_it_is_for(self):
        stderr = self.configure(system="Linux").stderr
        self.assertIn("a library for 64-bit Windows", " ".join(stderr.split()))

    def test_each_compiler_gets_its_import_library(self):
        for mingw, library in (("ON", "libTarnwick.dll.a"), ("OFF", "Tarnwick.lib")):
            project = self.build / mingw
            project.mkdir()
            (project / "CMakeLists.txt").write_text(
                f"cmake_minimum_required(VERSION 3.25)\nproject(P LANGUAGES NONE)\nset(WIN32 ON)\nset(MINGW {mingw})\n"
                "find_package(Tarnwick CONFIG REQUIRED)\nget_target_property(it Tarnwick::Tarnwick IMPORTED_IMPLIB)\n"
                "message(STATUS \"links ${it}\")\n")
            shown = run("cmake", "-S", project, "-B", project / "build", f"-DCMAKE_PREFIX_PATH={self.folder}")
            self.assertIn(f"links {self.folder}/lib/{library}", shown)

    def test_clang_and_lld_link_the_library_for_msvc(self):
        program = self.build / "host.exe"
        run("clang-19", "--target=x86_64-w64-windows-gnu", "--sysroot=/usr", "-fuse-ld=lld", "-Wall", "-Wextra", "-Werror", "-I",
            self.folder / "include", HOST / "host.c", self.folder / "lib" / "Tarnwick.lib", "-o", program)
        shutil.copy(self.folder / "bin" / "Tarnwick.dll", self.build)
        self.assertEqual(start(program), (0, f"{VERSION} {VERSION} {{}}\n"))

    def test_a_linker_that_does_as_msvcs_links_it_too(self):
        code, program = self.build / "bare.obj", self.build / "bare.exe"
        run("clang-19", "--target=x86_64-pc-windows-msvc", "-isystem", "/usr/x86_64-w64-mingw32/include", "-I",
            self.folder / "include", "-c", HOST / "bare.c", "-o", code)
        run("lld-link-19", "/nodefaultlib", "/entry:Start", "/subsystem:console", f"/out:{program}", code,
            self.folder / "lib" / "Tarnwick.lib", "/usr/x86_64-w64-mingw32/lib/libkernel32.a")
        shutil.copy(self.folder / "bin" / "Tarnwick.dll", self.build)
        self.assertEqual(start(program), (42, ""))

    def test_both_import_libraries_have_the_exports_and_no_others(self):
        exports = sorted((SOURCE / "src/core/Tarnwick.def").read_text().split("EXPORTS")[1].split())
        for library in ("Tarnwick.lib", "libTarnwick.dll.a"):
            symbols = run("llvm-nm-19", "--defined-only", self.folder / "lib" / library)
            self.assertEqual(sorted(set(re.findall(r"__imp_(\w+)", symbols))), exports, library)


STAND_IN_FOR_VCPKG = """
function(vcpkg_check_linkage)
endfunction()
function(vcpkg_extract_source_archive folder)
  cmake_parse_arguments(PARSE_ARGV 1 given NO_REMOVE_ONE_LEVEL ARCHIVE "")
  file(ARCHIVE_EXTRACT INPUT "${given_ARCHIVE}" DESTINATION "${CMAKE_CURRENT_BINARY_DIR}/extracted")
  set(${folder} "${CMAKE_CURRENT_BINARY_DIR}/extracted" PARENT_SCOPE)
endfunction()
function(vcpkg_install_copyright)
  cmake_parse_arguments(PARSE_ARGV 0 given "" "" FILE_LIST)
  file(INSTALL ${given_FILE_LIST} DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}" RENAME copyright)
endfunction()
"""


class PackageManagers(Outside):
    """The layouts for vcpkg and NuGet. Neither program is to be had here: what they would do is done by hand."""

    def test_the_port_is_a_manifest_with_its_package(self):
        port = PACKAGE / "vcpkg" / "tarnwick"
        manifest = json.loads((port / "vcpkg.json").read_text())
        self.assertEqual((manifest["name"], manifest["version"]), ("tarnwick", VERSION))
        self.assertIn("npublished", manifest["description"])
        self.assertEqual(tree(port), sorted([f"{NAME}.zip", "portfile.cmake", "usage", "vcpkg.json"]))
        self.assertEqual((port / f"{NAME}.zip").read_bytes(), (PACKAGE / f"{NAME}.zip").read_bytes())

    def test_a_project_finds_what_the_port_installs(self):
        port, installed = PACKAGE / "vcpkg" / "tarnwick", self.build / "installed"
        script = self.build / "port.cmake"
        script.write_text(f"set(CURRENT_PACKAGES_DIR \"{installed}\")\nset(PORT tarnwick)\nset(VERSION {VERSION})\n"
                          f"set(VCPKG_TARGET_IS_MINGW ON)\n{STAND_IN_FOR_VCPKG}include(\"{port}/portfile.cmake\")\n")
        run("cmake", "-P", script, cwd=self.build)
        self.assertTrue((installed / "share/tarnwick/copyright").is_file())
        self.assertEqual(sorted(path.name for path in installed.iterdir()), ["bin", "include", "lib", "share", "tools"])
        configured = self.configure(f"-DCMAKE_PREFIX_PATH={installed}")
        self.assertEqual(configured.returncode, 0, configured.stderr)
        run("cmake", "--build", self.build, "--target", "host_c")

    def test_the_nuget_layout_has_the_library_where_dotnet_looks(self):
        layout = PACKAGE / "nuget"
        expected = ["LICENSE", "docs/packaging.md", "tarnwick.nuspec", "runtimes/win-x64/native/Tarnwick.dll",
                    "build/native/tarnwick.targets", "build/native/lib/Tarnwick.lib"]
        expected += sources("include/tarnwick", "build/native/include/tarnwick")
        self.assertEqual(tree(layout), sorted(expected))
        self.assertEqual((layout / "runtimes/win-x64/native/Tarnwick.dll").read_bytes(),
                         (self.folder / "bin/Tarnwick.dll").read_bytes())

    def test_the_nuspec_is_whole_and_names_files_that_are_there(self):
        layout = PACKAGE / "nuget"
        root = xml.parse(layout / "tarnwick.nuspec").getroot()
        space = {"n": "http://schemas.microsoft.com/packaging/2013/05/nuspec.xsd"}
        text = {name: root.find(f"n:metadata/n:{name}", space).text
                for name in ("id", "version", "authors", "description", "license", "readme")}
        self.assertEqual((text["id"], text["version"], text["license"]), ("tarnwick", VERSION, "MIT"))
        self.assertIn("npublished", text["description"])
        self.assertTrue((layout / text["readme"]).is_file())
        for file in root.findall("n:files/n:file", space):
            self.assertTrue(list(layout.glob(file.get("src"))), file.get("src"))

    def test_the_msbuild_targets_name_files_that_are_there(self):
        targets = PACKAGE / "nuget/build/native/tarnwick.targets"
        text = targets.read_text()
        xml.fromstring(text)
        named = re.findall(r"\$\(MSBuildThisFileDirectory\)([^;\"]+)", text)
        self.assertEqual(len(named), 3)
        for name in named:
            self.assertTrue((targets.parent / name.replace("\\", "/")).exists(), name)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    PACKAGE = pathlib.Path(sys.argv[1]).resolve()
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
