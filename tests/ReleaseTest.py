"""What ./release does to a repository: a real one, in which compiling, testing and packing are stand-ins.

usage: ReleaseTest.py SOURCE_FOLDER
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(sys.argv.pop(1))

CHANGES = """# Changes

Newest first.

## Unreleased

### Program

- Something new.

## 1.0.0 - 2026-01-02

- The first version.
"""

CMAKE = """#!/bin/sh
echo "cmake $*" >>"$CALLS"
case "$*" in
  *RENEW*libKestrelHost.so.*) echo "of $*" >"tests/abi/$(expr "$*" : '.*/\\(libKestrelHost.so.[0-9]*\\)').abi.xz" ;;
  *RENEW*) ;;
  *BinaryInterfaceTest.cmake) exit "${INTERFACE:-0}" ;;
esac
"""

CPACK = """#!/bin/sh
echo "cpack $* at $SOURCE_DATE_EPOCH" >>"$CALLS"
echo a package >"$4/result-tables_1.1.0_amd64.deb"
"""

TEST = """#!/bin/sh
echo ./test >>"$CALLS"
exit "${TESTS:-0}"
"""


class Release(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.calls = pathlib.Path(folder.name) / "calls"
        self.root = pathlib.Path(folder.name) / "repository"
        tools = pathlib.Path(folder.name) / "tools"
        tools.mkdir()
        self.environment = dict(
            os.environ,
            PATH=f"{tools}:{os.environ['PATH']}",
            CALLS=str(self.calls),
            HOME=folder.name,
            GIT_CONFIG_NOSYSTEM="1",
            GIT_AUTHOR_NAME="A", GIT_AUTHOR_EMAIL="a@example.org", GIT_COMMITTER_NAME="A", GIT_COMMITTER_EMAIL="a@example.org",
        )
        for name in [name for name in self.environment if name in ("GIT_DIR", "GIT_WORK_TREE", "GIT_INDEX_FILE")]:
            del self.environment[name]
        (self.root / "tests/abi").mkdir(parents=True)
        (self.root / "tests/abi/libKestrelHost.so.1.abi.xz").write_text("as it was\n")
        (self.root / "CHANGELOG.md").write_text(CHANGES)
        (self.root / "CMakeLists.txt").write_text("project(Business_TableProperties VERSION 1.0.0 LANGUAGES CXX)\n")
        (self.root / ".gitignore").write_text("/build/\n")
        shutil.copy(SOURCE / "release", self.root)
        for file, content in ((tools / "cmake", CMAKE), (tools / "cpack", CPACK), (self.root / "test", TEST)):
            file.write_text(content)
            file.chmod(0o755)
        self.git("init", "--quiet", "--initial-branch=main")
        self.commit("Begin")

    def git(self, *words):
        return subprocess.run(
            ["git", *words], cwd=self.root, env=self.environment, check=True, capture_output=True, text=True
        ).stdout.strip()

    def commit(self, message):
        self.git("add", "--all")
        self.git("commit", "--quiet", "--message", message)

    def release(self, *words, **environment):
        return subprocess.run(
            ["./release", *words], cwd=self.root, env={**self.environment, **environment}, capture_output=True, text=True
        )

    def expect_done(self, outcome):
        self.assertEqual(outcome.returncode, 0, outcome.stderr)

    def expect_refused(self, outcome, message):
        """One line, and the repository is as it was."""
        self.assertEqual((outcome.returncode, outcome.stderr), (2, f"release: {message}\n"))
        self.assertEqual(self.git("log", "--format=%s"), "Begin")
        self.assertEqual(self.git("status", "--porcelain"), "")

    def text(self, name):
        return (self.root / name).read_text()

    def test_prepare_raises_the_version_closes_the_changes_and_stores_the_interfaces(self):
        self.expect_done(self.release("prepare", "1.1.0"))
        self.assertEqual(self.git("log", "-1", "--format=%s"), "Release 1.1.0")
        self.assertEqual(self.git("status", "--porcelain"), "")
        self.assertIn("VERSION 1.1.0 LANGUAGES", self.text("CMakeLists.txt"))
        self.assertRegex(
            self.text("CHANGELOG.md"), r"\n## Unreleased\n\n## 1\.1\.0 - \d{4}-\d\d-\d\d\n\n### Program\n\n- Something new\.\n"
        )
        self.assertNotEqual(self.text("tests/abi/libKestrelHost.so.1.abi.xz"), "as it was\n")

    def test_a_first_number_that_is_raised_renames_the_interfaces(self):
        self.expect_done(self.release("prepare", "2.0.0", INTERFACE="1"))
        self.assertEqual([file.name for file in (self.root / "tests/abi").iterdir()], ["libKestrelHost.so.2.abi.xz"])
        self.assertEqual(self.git("status", "--porcelain"), "")

    def test_prepare_refuses_an_interface_that_breaks_its_promise(self):
        outcome = self.release("prepare", "1.1.0", INTERFACE="1")
        self.expect_refused(outcome, "the binary interface has changed: raise the first number (docs/releasing.md)")

    def test_prepare_takes_changes_of_any_length(self):
        (self.root / "CHANGELOG.md").write_text(CHANGES.replace("new.\n", "new.\n" + "- And more.\n" * 20000))
        self.commit("Change much")
        self.expect_done(self.release("prepare", "1.1.0"))

    def test_prepare_refuses_versions_that_are_none_or_no_higher(self):
        self.expect_refused(self.release("prepare", "1.1"), "expected a version like 1.2.3; found: 1.1")
        self.expect_refused(self.release("prepare", "1.0.0"), "expected a version above 1.0.0; found: 1.0.0")
        self.expect_refused(self.release("prepare", "0.9.10"), "expected a version above 1.0.0; found: 0.9.10")

    def test_prepare_refuses_without_changes(self):
        (self.root / "CHANGELOG.md").write_text(CHANGES.replace("### Program\n\n- Something new.\n", ""))
        self.git("commit", "--quiet", "--all", "--amend", "--no-edit")
        self.expect_refused(
            self.release("prepare", "1.1.0"), 'CHANGELOG.md: expected entries under "Unreleased"; found none'
        )

    def test_what_is_not_committed_stops_every_step(self):
        (self.root / "new").write_text("")
        for words in (["prepare", "1.1.0"], ["finish"], ["undo", "1.1.0"]):
            outcome = self.release(*words)
            self.assertEqual(
                (outcome.returncode, outcome.stderr),
                (2, "release: expected no changes that are not committed; found: ?? new\n"),
            )
        self.assertEqual(self.text("new"), "")

    def test_finish_tests_packs_and_tags(self):
        self.release("prepare", "1.1.0")
        self.calls.unlink()
        self.expect_done(self.release("finish"))
        time = self.git("log", "-1", "--format=%ct")
        self.assertEqual(
            self.calls.read_text().splitlines(),
            [
                "./test",
                "cmake --preset package",
                "cmake --build --preset package",
                f"cpack --preset package -B {self.root}/build/releases/1.1.0 at {time}",
            ],
        )
        self.assertEqual(self.git("rev-parse", "v1.1.0^{commit}"), self.git("rev-parse", "HEAD"))
        self.assertEqual(
            self.git("tag", "--list", "--format=%(contents)", "v1.1.0"), "Version 1.1.0\n\n### Program\n\n- Something new."
        )
        folder = self.root / "build/releases/1.1.0"
        self.assertEqual(
            sorted(file.name for file in folder.iterdir()),
            ["SHA256SUMS", "business-table-properties-1.1.0.tar.gz", "result-tables_1.1.0_amd64.deb"],
        )
        subprocess.run(["sha256sum", "--check", "--quiet", "SHA256SUMS"], cwd=folder, check=True)

    def test_the_archive_is_the_same_whenever_it_is_made(self):
        archives = []
        for _ in range(2):
            if not archives:
                self.release("prepare", "1.1.0")
            self.expect_done(self.release("finish"))
            archives.append((self.root / "build/releases/1.1.0/business-table-properties-1.1.0.tar.gz").read_bytes())
            self.git("tag", "--delete", "v1.1.0")
            self.git("gc", "--quiet")
        self.assertEqual(archives[0], archives[1])

    def test_finish_leaves_no_tag_when_a_test_fails(self):
        self.release("prepare", "1.1.0")
        self.assertNotEqual(self.release("finish", TESTS="1").returncode, 0)
        self.assertEqual(self.git("tag"), "")
        self.assertFalse((self.root / "build/releases/1.1.0").exists())

    def test_finish_refuses_what_was_not_prepared_or_is_there(self):
        self.expect_refused(
            self.release("finish"), 'expected a commit "Release 1.0.0" of ./release prepare; found: Begin'
        )
        self.release("prepare", "1.1.0")
        self.release("finish")
        commit = self.git("rev-parse", "--short", "HEAD")
        outcome = self.release("finish")
        self.assertEqual(outcome.stderr, f"release: expected no tag v1.1.0; found one, of {commit}\n")
        self.assertEqual(outcome.returncode, 2)

    def test_undo_takes_back_tag_commit_and_files(self):
        before = self.git("rev-parse", "HEAD")
        self.release("prepare", "1.1.0")
        self.release("finish")
        self.expect_done(self.release("undo", "1.1.0"))
        self.assertEqual(self.git("rev-parse", "HEAD"), before)
        self.assertEqual(self.git("tag"), "")
        self.assertFalse((self.root / "build/releases/1.1.0").exists())
        self.expect_refused(self.release("undo", "1.1.0"), 'expected "Release 1.1.0" as the last commit; found: Begin')

    def test_undo_refuses_what_others_have(self):
        self.release("prepare", "1.1.0")
        self.git("update-ref", "refs/remotes/origin/main", "HEAD")
        outcome = self.release("undo", "1.1.0")
        self.assertEqual(
            outcome.stderr, "release: expected a commit that no other repository has; found it in:  origin/main\n"
        )
        self.assertEqual(self.git("log", "-1", "--format=%s"), "Release 1.1.0")

    def test_other_words_are_refused(self):
        for words in ([], ["publish"], ["prepare"], ["finish", "1.1.0"]):
            self.expect_refused(
                self.release(*words), "usage: ./release prepare VERSION | finish | undo VERSION | interface"
            )


if __name__ == "__main__":
    unittest.main()
