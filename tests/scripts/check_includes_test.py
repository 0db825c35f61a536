#!/usr/bin/env python3
"""scripts/check_includes on small source trees: what it lets through, what it
names, and that it fails."""

import os
import subprocess
import sys
import tempfile
import unittest

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "check_includes")


def run(tree):
    """Writes `tree` ({path under src/: text}) and runs the check on it."""
    with tempfile.TemporaryDirectory() as root:
        for relative, text in tree.items():
            path = os.path.join(root, relative)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="utf-8") as out:
                out.write(text)
        done = subprocess.run([sys.executable, SCRIPT, root], capture_output=True, text=True)
        return done.returncode, done.stderr.splitlines()


class Allowed(unittest.TestCase):
    def test_downward_own_layer_standard_and_allowed_qt_pass(self):
        status, lines = run({
            "image/plane.h": "#include <vector>\n#include <queue>\n",
            "expr/eval.cpp": '#include "image/plane.h"\n#include "expr/eval.h"\n#include "local.h"\n',
            "ops/pool.cpp": '#include "expr/eval.h"\n#include "image/plane.h"\n',
            "files/png.cpp": '#include <QImage>\n#include <QtGui/QImageReader>\n#include "ops/pool.h"\n',
            "app/manual_pages.cpp": "#include <QFile>\n",
            "program/main.cpp": '#include <QApplication>\n#include "ui/qt/main_window.h"\n#include "app/app_state.h"\n',
            "ui/model/geometry.cpp": '#include "app/app_state.h"\n#include "ui/model/zoom.h"\n',
            "ui/qt/window.cpp": '#include <QMainWindow>\n#include "ui/model/geometry.h"\n',
        })
        self.assertEqual(lines, [])
        self.assertEqual(status, 0)

    def test_a_tree_without_ui_passes(self):
        status, lines = run({"image/a.h": "#pragma once\n", "app/b.cpp": '#include "image/a.h"\n'})
        self.assertEqual((status, lines), (0, []))


class Refused(unittest.TestCase):
    def test_each_offence_is_named_with_file_and_line(self):
        ladder = "image <- expr <- ops <- files <- app <- ui <- program"
        cases = [
            ("image/a.cpp", '#include "expr/eval.h"',
             "src/image/a.cpp:2: image must not include expr/eval.h: it points up the ladder " + ladder),
            ("image/b.h", '#include "../ops/pool.h"',
             "src/image/b.h:2: image must not include ../ops/pool.h: it points up the ladder " + ladder),
            ("expr/c.cpp", '#include "files/png.h"',
             "src/expr/c.cpp:2: expr must not include files/png.h: it points up the ladder " + ladder),
            ("ops/d.cpp", '#  include "app/app_state.h"',
             "src/ops/d.cpp:2: ops must not include app/app_state.h: it points up the ladder " + ladder),
            ("files/e.cpp", '#include "app/logger.h"',
             "src/files/e.cpp:2: files must not include app/logger.h: it points up the ladder " + ladder),
            ("app/f.cpp", '#include "ui/model/zoom.h"',
             "src/app/f.cpp:2: app must not include ui/model/zoom.h: it points up the ladder " + ladder),
            ("app/main.cpp", '#include "ui/qt/viewer_app.h"',
             "src/app/main.cpp:2: app must not include ui/qt/viewer_app.h: it points up the ladder " + ladder),
            ("ui/qt/m.cpp", '#include "program/entry.h"',
             "src/ui/qt/m.cpp:2: ui must not include program/entry.h: it points up the ladder " + ladder),
            ("app/n.cpp", "#include <QApplication>", "src/app/n.cpp:2: app must not include the Qt header <QApplication>"),
            ("image/g.h", "#include <QImage>", "src/image/g.h:2: image must not include the Qt header <QImage>"),
            ("ops/h.cpp", "#include <QtConcurrent>", "src/ops/h.cpp:2: ops must not include the Qt header <QtConcurrent>"),
            ("app/i.cpp", "#include <QString>", "src/app/i.cpp:2: app must not include the Qt header <QString>"),
            ("ui/model/j.cpp", "#include <QPoint>", "src/ui/model/j.cpp:2: ui/model must stay free of Qt, includes <QPoint>"),
            ("ui/model/k.h", "#include <qtgui-config.h>",
             "src/ui/model/k.h:2: ui/model must stay free of Qt, includes <qtgui-config.h>"),
            ("ui/model/l.cpp", '#include "ui/qt/canvas.h"',
             "src/ui/model/l.cpp:2: ui/model must not include ui/qt/ (ui/qt/canvas.h)"),
        ]
        for relative, include, expected in cases:
            with self.subTest(relative=relative):
                status, lines = run({relative: "// first line\n" + include + "\n"})
                self.assertEqual(status, 1)
                self.assertEqual(lines, [expected, "check_includes: 1 include(s) break the layering"])

    def test_every_offence_of_a_tree_is_listed(self):
        status, lines = run({
            "image/a.h": '#include "ops/x.h"\n#include <QColor>\n',
            "expr/b.cpp": '#include "image/a.h"\n#include "app/y.h"\n',
        })
        self.assertEqual(status, 1)
        self.assertEqual([line.split(": ")[0] for line in lines[:-1]],
                         ["src/expr/b.cpp:2", "src/image/a.h:1", "src/image/a.h:2"])
        self.assertEqual(lines[-1], "check_includes: 3 include(s) break the layering")

    def test_a_missing_source_folder_is_an_error(self):
        done = subprocess.run([sys.executable, SCRIPT, "/nonexistent/korvanel-src"], capture_output=True, text=True)
        self.assertEqual(done.returncode, 2)
        self.assertIn("no source folder", done.stderr)


if __name__ == "__main__":
    unittest.main()
