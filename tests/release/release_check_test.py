"""scripts/release-check on throw-away repositories, with one thing wrong in each.

usage: release_check_test.py [UNITTEST ARGUMENT...]
"""

import datetime
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts/release-check"
PROJECT = "cmake_minimum_required(VERSION 3.25)\nproject(Tarnwick VERSION 1.2.3 LANGUAGES CXX)\n"
HEAD = "# Changelog\n\nWhat changed.\n\n"
SECTION = "## [1.2.3] - 2026-01-02\n\n### Added\n\n- Something.\n"
EARLIER = "\n## [1.2.2] - 2025-12-01\n\n### Fixed\n\n- Something else.\n"
# Nothing of whoever runs this: no signing, no templates, no hooks.
ENVIRONMENT = {**os.environ, "GIT_CONFIG_GLOBAL": os.devnull, "GIT_CONFIG_NOSYSTEM": "1",
               "GIT_AUTHOR_NAME": "A", "GIT_AUTHOR_EMAIL": "a@example.com",
               "GIT_COMMITTER_NAME": "A", "GIT_COMMITTER_EMAIL": "a@example.com"}


class ReleaseCheck(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.top = pathlib.Path(folder.name)
        (self.top / "scripts").mkdir()
        shutil.copy(SCRIPT, self.top / "scripts")
        self.git("init", "--quiet")
        self.commit(project=PROJECT, changelog=HEAD + SECTION + EARLIER)

    def git(self, *arguments):
        subprocess.run(["git", *arguments], cwd=self.top, env=ENVIRONMENT, check=True, stdout=subprocess.DEVNULL)

    def commit(self, project=None, changelog=None, checker=None):
        for name, text in (("CMakeLists.txt", project), ("CHANGELOG.md", changelog), ("scripts/check-version", checker)):
            if text is not None:
                (self.top / name).write_text(text, encoding="utf-8")
                (self.top / name).chmod(0o755)
        self.git("add", "--all")
        self.git("commit", "--quiet", "--allow-empty", "--message", "x")

    def run_script(self, *arguments):
        return subprocess.run([self.top / "scripts/release-check", *arguments], cwd="/", env=ENVIRONMENT, check=False,
                              capture_output=True, text=True)

    def expect(self, *faults, version="1.2.3"):
        """These faults and no others, each on a line of its own."""
        result = self.run_script(version)
        self.assertEqual(result.stderr.splitlines(), [f"release-check: {fault}" for fault in faults])
        self.assertEqual((result.returncode, result.stdout), (1, "") if faults else (0, f"{version} may be released\n"))

    def with_section(self, section):
        self.commit(changelog=HEAD + section + EARLIER)

    def test_a_commit_that_is_ready_passes(self):
        self.expect()

    def test_a_tag_on_what_is_checked_out_passes(self):
        self.git("tag", "v1.2.3")
        self.expect()
        self.git("tag", "--force", "--annotate", "--message", "x", "v1.2.3")
        self.expect()

    def test_a_tag_elsewhere_is_refused(self):
        self.git("tag", "--annotate", "--message", "x", "v1.2.3")
        tagged, = self.commits()
        self.commit()
        head = self.commits()[0]
        self.expect(f"tag v1.2.3 is there and points at {tagged[:12]}, not at what is checked out, {head[:12]}")

    def commits(self):
        return subprocess.run(["git", "log", "--format=%H"], cwd=self.top, check=True, capture_output=True, text=True).stdout.split()

    def test_another_version_in_the_project_is_refused(self):
        self.commit(project=PROJECT.replace("1.2.3", "1.2.30"))
        self.expect("CMakeLists.txt has version 1.2.30")

    def test_a_project_without_a_version_is_refused(self):
        self.commit(project=PROJECT.replace(" VERSION 1.2.3", ""))
        self.expect("CMakeLists.txt has no project(... VERSION ...)")

    def test_what_the_version_checker_finds_is_told_without_its_sum(self):
        self.commit(checker="#!/bin/sh\necho 'a.h: 1 where the project has 2'\necho '1 differs'\nexit 1\n")
        self.expect("a.h: 1 where the project has 2")

    def test_a_version_checker_that_fails_without_a_word_is_told(self):
        self.commit(checker="#!/bin/sh\nexit 3\n")
        self.expect("scripts/check-version ended with 3")

    def test_a_version_checker_that_finds_nothing_passes(self):
        self.commit(checker="#!/bin/sh\necho '0 differ'\n")
        self.expect()

    def test_a_changelog_without_the_version_is_refused(self):
        self.with_section("")
        self.expect("CHANGELOG.md has no section [1.2.3] ahead of all other versions")

    def test_a_version_below_an_earlier_one_is_refused(self):
        self.commit(changelog=HEAD + EARLIER + SECTION)
        self.expect("CHANGELOG.md has no section [1.2.3] ahead of all other versions")

    def test_an_earlier_version_that_was_withdrawn_passes(self):
        self.commit(changelog=HEAD + SECTION + EARLIER.replace("2025-12-01", "2025-12-01 [YANKED]"))
        self.expect()

    def test_a_section_without_a_day_is_refused(self):
        self.with_section(SECTION.replace(" - 2026-01-02", ""))
        self.expect("CHANGELOG.md has no day behind [1.2.3]")

    def test_a_day_that_is_none_is_refused(self):
        self.with_section(SECTION.replace("2026-01-02", "2026-02-30"))
        self.expect("CHANGELOG.md dates 1.2.3 to 2026-02-30, which is no day")

    def test_a_day_to_come_is_refused(self):
        later = datetime.date.today() + datetime.timedelta(days=2)
        self.with_section(SECTION.replace("2026-01-02", later.isoformat()))
        self.expect(f"CHANGELOG.md dates 1.2.3 to a day that is still to come, {later}")

    def test_a_heading_of_another_form_is_refused(self):
        self.commit(changelog=HEAD + SECTION + "\n## 1.2.2 (December)\n\n- x\n")
        self.expect("CHANGELOG.md has a section '1.2.2 (December)', which is neither '[Unreleased]' nor '[X.Y.Z] - YYYY-MM-DD'")

    def test_a_section_without_entries_is_refused(self):
        self.with_section("## [1.2.3] - 2026-01-02\n\nNothing.\n")
        self.expect("CHANGELOG.md tells nothing of 1.2.3")

    def test_a_heading_without_entries_is_refused(self):
        self.with_section(SECTION + "\n### Fixed\n")
        self.expect("CHANGELOG.md has nothing under 'Fixed' in 1.2.3")

    def test_an_unknown_heading_is_refused(self):
        self.with_section(SECTION.replace("Added", "New"))
        self.expect("CHANGELOG.md has a heading 'New' in 1.2.3, which is none of Added, Changed, Deprecated, Removed, Fixed, Security")

    def test_entries_above_the_first_heading_are_refused(self):
        self.with_section(SECTION.replace("### Added", "- Stray.\n\n### Added"))
        self.expect("CHANGELOG.md has entries of 1.2.3 above the first of its headings")

    def test_an_empty_unreleased_section_is_refused(self):
        self.with_section("## [Unreleased]\n\n" + SECTION)
        self.expect("CHANGELOG.md has an empty [Unreleased]: take it out")

    def test_entries_left_unreleased_are_refused(self):
        self.with_section("## [Unreleased]\n\n### Added\n\n- One.\n- Two.\n\n" + SECTION)
        self.expect("CHANGELOG.md has entries left under [Unreleased]: put them under [1.2.3]")

    def test_changes_that_are_not_committed_are_refused(self):
        (self.top / "new.txt").write_text("x", encoding="utf-8")
        self.expect("not everything is committed, such as new.txt")
        self.git("add", "new.txt")
        self.expect("not everything is committed, such as new.txt")

    def test_everything_that_is_wrong_is_told_at_once(self):
        (self.top / "new.txt").write_text("x", encoding="utf-8")
        self.expect("CMakeLists.txt has version 1.2.3", "CHANGELOG.md has no section [2.0.0] ahead of all other versions",
                    "not everything is committed, such as new.txt", version="2.0.0")

    def test_a_wrong_command_line_ends_with_2(self):
        for arguments in ((), ("1.2.3", "1.2.4"), ("v1.2.3",), ("1.2",), ("1.02.3",), ("",)):
            result = self.run_script(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""), arguments)
            self.assertTrue(result.stderr, arguments)
        self.assertEqual(self.run_script("v1.2.3").stderr, "release-check: 'v1.2.3' is no version such as 1.2.3\n")

    def test_help_tells_the_use(self):
        result = self.run_script("--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("usage: scripts/release-check VERSION", result.stdout)


if __name__ == "__main__":
    unittest.main()
