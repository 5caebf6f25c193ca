# SPDX-License-Identifier: MIT
"""What is installed beside the program: files of the right form that say what the program does, at
the right places; and the scripts that build it."""

import fnmatch
import json
import os
import re
import shlex
import shutil
import subprocess
import tempfile
import unittest

from gi.repository import GLib

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
BUILD = os.environ.get("VANTOREL_BUILD") or os.path.join(ROOT, "build", "release")
PACKAGING = os.path.join(ROOT, "packaging")
ID = "com.vantorel.Vantorel"


def run(*command, **options):
    return subprocess.run(command, check=False, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, **options)


def read(*parts):
    with open(os.path.join(*parts), encoding="utf-8") as file:
        return file.read()


class PackagingCase(unittest.TestCase):
    def assert_content(self, *command):
        done = run(*command)
        self.assertEqual((done.returncode, done.stdout.strip()), (0, ""))

    def directory(self, name="vantorel packaging "):
        path = tempfile.mkdtemp(prefix=name)
        self.addCleanup(shutil.rmtree, path)
        return path


class Validators(PackagingCase):
    def test_the_desktop_entry(self):
        self.assert_content("desktop-file-validate", os.path.join(PACKAGING, f"{ID}.desktop"))

    def test_the_stores_entry(self):
        done = run("appstreamcli", "validate", "--no-net",
                   os.path.join(BUILD, f"{ID}.metainfo.xml"))
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertNotRegex(done.stdout, r"(?m)^[EW]:")

    def test_the_manual_page(self):
        self.assert_content("mandoc", "-T", "lint", "-W", "warning",
                            os.path.join(BUILD, "vantorel.1"))

    def test_the_shell_scripts(self):
        self.assert_content("shellcheck", "--severity=warning", *sorted(self.shell_scripts()))

    def shell_scripts(self):
        for place in ("", ".ci", "tools", os.path.join("tests", "package")):
            for name in os.listdir(os.path.join(ROOT, place)):
                path = os.path.join(ROOT, place, name)
                if os.path.isfile(path):
                    with open(path, "rb") as file:
                        if re.match(rb"#!.*\b(ba)?sh\b", file.readline()):
                            yield path

    def test_the_version_stands_in_one_place(self):
        version = run(os.path.join(BUILD, "vantorel"), "--version").stdout.split()[1]
        self.assertIn(f'<release version="{version}"', read(BUILD, f"{ID}.metainfo.xml"))
        self.assertIn(f".Os Vantorel {version}\n", read(BUILD, "vantorel.1"))

    def test_the_newest_release_is_the_same_to_readers_and_to_stores(self):
        version = re.search(r"project\(Vantorel VERSION ([\d.]+)", read(ROOT, "CMakeLists.txt"))[1]
        told = re.search(r"^## ([\d.]+), (\S+)$", read(ROOT, "CHANGELOG.md"), re.MULTILINE)
        for_stores = read(PACKAGING, f"{ID}.metainfo.xml.in")
        date = re.search(r'<release version="@PROJECT_VERSION@" date="([\d-]+)"', for_stores)[1]
        self.assertEqual(told.groups(), (version, date))


class Completions(PackagingCase):
    """Manual page, completions and help name the same options."""

    def setUp(self):
        self.help = run(os.path.join(BUILD, "vantorel"), "--help").stdout
        self.options = sorted(set(re.findall(r"(?m)(?<=[ ,] )--[a-z0-9-]+=?", self.help)))
        self.assertIn("--include-app=", self.options)
        self.assertGreater(len(self.options), 15)
        self.verbs = sorted(re.findall(r"(?m)^  ([a-z]+)(?: |$)", self.help))
        self.assertIn("list", self.verbs)

    def test_the_manual_page_explains_each_option(self):
        page = read(BUILD, "vantorel.1")
        explained = " ".join(re.findall(r"(?m)^\.It (Fl -.*)$", page))
        named = re.findall(r"Fl -([a-z0-9-]+)( Ns =)?", explained)
        self.assertEqual(sorted(f"--{name}{'=' if equals else ''}" for name, equals in named),
                         self.options)
        self.assertEqual(sorted(re.findall(r"(?m)^\.It Cm ([a-z]+)", page)), self.verbs)

    def complete_in_bash(self, word, *before):
        words = ("vantorel", *before, word)
        number = len(words) - 1
        script = (f"source {shlex.quote(os.path.join(BUILD, 'completions', 'vantorel'))}; "
                  f"compopt() {{ :; }}; COMP_WORDS=({shlex.join(words)}); COMP_CWORD={number}; "
                  "_vantorel; printf '%s\\n' \"${COMPREPLY[@]}\"")
        return run("bash", "--norc", "-c", script).stdout.split()

    def test_bash_offers_each_command_as_the_first_word(self):
        self.assertEqual(sorted(self.complete_in_bash("")), self.options + self.verbs)
        self.assertEqual(self.complete_in_bash("--inc"), ["--include-app="])
        self.assertEqual(self.complete_in_bash("--", "--toggle"), [])
        self.assertEqual(self.complete_in_bash("", "list"), ["--json", "--null"])
        self.assertEqual(self.complete_in_bash("--n", "search", "--json"), ["--null"])
        self.assertEqual(self.complete_in_bash("", "copy"), [])
        self.assertEqual(self.complete_in_bash("--", "export"), ["--in-the-clear"])
        self.assertEqual(self.complete_in_bash(os.path.join(ROOT, "pack"), "import"), [PACKAGING])

    def test_zsh_offers_each_option(self):
        path = os.path.join(BUILD, "completions", "_vantorel")
        self.assert_content("zsh", "-n", path)
        named = re.findall(r"(?m)^  '\(-\)(--[a-z0-9-]+=?)\[([^]]+)\]", read(path))
        self.assertEqual(sorted(name for name, _ in named), self.options)
        for _, words in named:
            self.assertGreater(len(words), 3)
        verbs = re.findall(r"(?m)^  '([a-z]+):[^':]+'$", read(path))
        self.assertEqual(sorted(verbs), self.verbs)
        self.assertIn("    list) _arguments -S --json --null ", read(path))

    def complete_in_fish(self, line):
        path = os.path.join(BUILD, "completions", "vantorel.fish")
        self.assert_content("fish", "--no-execute", path)
        done = run("fish", "--no-config", "-c",
                   f"source {shlex.quote(path)}; complete -C {shlex.quote(line)}",
                   env={**os.environ, "HOME": self.directory()})
        return sorted(offer.split("\t")[0] for offer in done.stdout.splitlines())

    def test_fish_offers_each_command(self):
        self.assertEqual(self.complete_in_fish("vantorel --"),
                         [option.rstrip("=") for option in self.options])
        self.assertEqual(self.complete_in_fish("vantorel "), self.verbs)
        self.assertEqual(self.complete_in_fish("vantorel list --"), ["--json", "--null"])
        self.assertEqual(self.complete_in_fish("vantorel copy "), [])


class Installing(PackagingCase):
    def install(self, *arguments, env=None):
        done = run("cmake", "--install", BUILD, *arguments, env={**os.environ, **(env or {})})
        self.assertEqual(done.returncode, 0, done.stdout)

    def command_of_service(self, root):
        text = read(root, "share", "dbus-1", "services", f"{ID}.service")
        self.assertIn(f"Name={ID}\n", text)
        _, words = GLib.shell_parse_argv(re.search(r"(?m)^Exec=(.*)$", text)[1])
        return words

    def commands_of_entry(self, root):
        path = os.path.join(root, "share", "applications", f"{ID}.desktop")
        self.assert_content("desktop-file-validate", path)
        return re.findall(r"(?m)^Exec=(.*)$", read(path))

    def test_everything_stands_below_a_prefix_with_blanks_and_signs(self):
        prefix = os.path.join(self.directory(), "a $prefix \"here\"")
        self.install("--prefix", prefix)
        program = os.path.join(prefix, "bin", "vantorel")
        self.assertEqual(self.command_of_service(prefix), [program])
        self.assertEqual(run(program, "--version").returncode, 0)
        self.assertEqual(self.commands_of_entry(prefix)[0], "vantorel")
        for file in ("libexec/vantorel/vantorel-text", "share/man/man1/vantorel.1",
                     f"share/applications/{ID}.desktop", f"share/metainfo/{ID}.metainfo.xml",
                     f"share/icons/hicolor/scalable/apps/{ID}.svg",
                     f"share/icons/hicolor/48x48/apps/{ID}.png",
                     f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
                     "share/bash-completion/completions/vantorel",
                     "share/zsh/site-functions/_vantorel",
                     "share/fish/vendor_completions.d/vantorel.fish"):
            self.assertGreater(os.path.getsize(os.path.join(prefix, file)), 0, file)

    def test_a_staged_installation_speaks_of_where_it_will_be(self):
        stage = self.directory()
        self.install("--prefix", "/opt/vantorel", env={"DESTDIR": stage})
        self.assertEqual(os.listdir(stage), ["opt"])
        root = os.path.join(stage, "opt", "vantorel")
        self.assertEqual(self.command_of_service(root), ["/opt/vantorel/bin/vantorel"])
        commands = self.commands_of_entry(root)
        self.assertEqual(commands[:2], ["/opt/vantorel/bin/vantorel",
                                        "/opt/vantorel/bin/vantorel --toggle"])


class Recipes(PackagingCase):
    """The other distributions' recipes follow what the build looks for and installs."""

    def setUp(self):
        self.spec = read(PACKAGING, "fedora", "vantorel.spec")
        self.scripts = "".join(
            read(folder, "CMakeLists.txt")
            for folder, _, files in os.walk(os.path.join(ROOT, "src")) if "CMakeLists.txt" in files)

    def test_fedoras_names_what_the_build_looks_for(self):
        calls = re.findall(r"pkg_check_modules\(\w+ ([^)]*)\)", self.scripts)
        modules = {word for call in calls for word in call.split() if not word.isupper()}
        self.assertIn("wayland-client", modules)
        if "wayland-scanner" in self.scripts:
            modules.add("wayland-scanner")
        missing = [module for module in sorted(modules)
                   if f"\nBuildRequires:  pkgconfig({module})\n" not in self.spec]
        self.assertEqual(missing, [])
        self.assertEqual("Qt6::GuiPrivate" in self.scripts,
                         "\nBuildRequires:  qt6-qtbase-private-devel\n" in self.spec)

    def test_fedoras_packs_what_is_installed_and_no_more(self):
        stage = self.directory()
        done = run("cmake", "--install", BUILD, "--prefix", "/usr",
                   env={**os.environ, "DESTDIR": stage})
        self.assertEqual(done.returncode, 0, done.stdout)
        installed = [os.path.join(folder, file).removeprefix(stage)
                     for folder, _, files in os.walk(stage) for file in files]
        places = {"_bindir": "/usr/bin", "_libexecdir": "/usr/libexec", "_datadir": "/usr/share",
                  "_mandir": "/usr/share/man", "_metainfodir": "/usr/share/metainfo"}
        packed = [re.sub(r"%{(\w+)}", lambda macro: places[macro[1]], line)
                  for line in self.spec.partition("\n%files\n")[2].split() if line.startswith("%{")]
        patterns = [pattern + "*" if pattern.endswith("/") else pattern for pattern in packed]
        self.assertEqual([file for file in installed
                          if not any(fnmatch.fnmatch(file, each) for each in patterns)], [])
        self.assertEqual([each for each in patterns if not fnmatch.filter(installed, each)], [])


class Building(PackagingCase):
    """What a distribution does: its own kind of build, no tests, not every library."""

    def test_without_tests_without_tesseract_and_with_a_distributions_flags(self):
        build = self.directory()
        done = run("cmake", "-S", ROOT, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                   "-DBUILD_TESTING=OFF", "-DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON",
                   "-DVANTOREL_TESSERACT=OFF", env={**os.environ, "CXXFLAGS": "-O2 -g"})
        self.assertEqual(done.returncode, 0, done.stdout)
        commands = json.loads(read(build, "compile_commands.json"))
        files = {os.path.relpath(each["file"], ROOT): each["command"] for each in commands}
        self.assertIn("src/main.cpp", files)
        self.assertNotIn("src/platform/linux/textinpictures/worker/main.cpp", files)
        self.assertFalse([file for file in files if file.startswith("tests")])
        for command in files.values():
            self.assertNotIn("-Werror", command)
            self.assertIn("-O2 -g", command)
            self.assertIn("-fstack-protector-strong", command)


class Scripts(PackagingCase):
    """The scripts on a machine that is not Debian's, and in sessions of both kinds."""

    def programs(self, *names):
        directory = self.directory()
        for name in names:
            os.symlink(shutil.which(name), os.path.join(directory, name))
        return {"PATH": directory, "HOME": directory}

    def test_without_apt_the_missing_are_named_and_the_build_goes_on(self):
        env = self.programs("bash", "env", "sed", "sort")
        done = run(os.path.join(ROOT, "tools", "packages"),
                   os.path.join(PACKAGING, "build-packages.txt"), env=env)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertIn("libxcb-xfixes0-dev", done.stdout)
        self.assertIn("Debian", done.stdout)

    def test_wayland_alone_is_a_display(self):
        """Without one there is something to show, which needs a private desktop."""
        programs = self.programs("bash", "env", "dirname", "sed", "sort")
        for session, has_display in (({}, False), ({"WAYLAND_DISPLAY": "wayland-0"}, True),
                                     ({"DISPLAY": ":0"}, True)):
            done = run(os.path.join(ROOT, "run"), env={**programs, **session})
            self.assertEqual("xvfb" in done.stdout, not has_display, done.stdout)


if __name__ == "__main__":
    unittest.main()
