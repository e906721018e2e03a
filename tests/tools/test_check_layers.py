#!/usr/bin/env python3
"""The floor check itself: small trees with one include each, and the verdict
the checker must give on them. A checker that passed everything, or named the
wrong file, line or floors, fails here."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECKER = Path(__file__).resolve().parents[2] / "tools" / "check_layers.py"

# (the file written, its text, exit code, what the report must say or "")
CASES = [
    ("navmath/Up.h", '#pragma once\n#include "core/Types.h"\n#include "charts/Chart.h"\n', 1,
     'navmath/Up.h:3: includes "charts/Chart.h" from a floor above (floor 2 navmath/ -> floor 4 instruments/ charts/)'),
    ("platform/api/Canvas.h", '#include "core/Types.h"\n', 1,
     'platform/api/Canvas.h:1: includes "core/Types.h" from a floor above (floor 0 platform/api/ -> floor 1 core/)'),
    ("core/Val.cpp", '// a comment\n  #  include "navmath/RLGC.h"\n', 1,
     'core/Val.cpp:2: includes "navmath/RLGC.h" from a floor above (floor 1 core/ -> floor 2 navmath/)'),
    ("charts/Legs.cpp", '#include "navobjects/Routes.h"\n', 1, "floor 4 instruments/ charts/ -> floor 5 navobjects/"),
    ("plotter/Plotter.cpp", '#include "ui/FrmMain.h"\n', 1, "floor 7 plotter/ -> floor 8 ui/"),
    ("platform/comms/Port.cpp", '#include "instruments/Comm.h"\n', 1, "floor 3 platform/ -> floor 4"),
    ("navobjects/Gpx.cpp", '#include "tests/support/TestSupport.h"\n', 1, 'navobjects/Gpx.cpp:1: includes "tests/support/TestSupport.h" from tests/'),
    ("navmath/RLGC.cpp", "#include <QString>\n", 1, "navmath/RLGC.cpp:1: includes Qt <QString> outside"),
    ("charts/Chart.cpp", "#include <QtCore/QDir>\n", 1, "includes Qt <QtCore/QDir>"),
    ("misc/Extra.cpp", '#include "core/Val.h"\n', 1, "misc/Extra.cpp:1: a source file outside every floor"),
    ("core/Tables.cpp", '#include "data/table.inc"\n', 1, 'core/Tables.cpp:1: includes "data/table.inc", which stands on no floor'),
    ("navmath/MagVar.cpp", '#include "core/Val.h"\n#include "platform/api/Clock.h"\n', 1,
     'navmath/MagVar.cpp:2: includes "platform/api/Clock.h"; navmath/ includes only core/, navmath/'),
    # What is allowed.
    ("ui/FrmMain.cpp", '#include <QDialog>\n#include "plotter/Plotter.h"\n#include "core/Val.h"\n', 0, ""),
    ("platform/qt/QtServices.cpp", '#include <QPainter>\n#include "platform/fake/ScriptedDialogs.h"\n', 0, ""),
    ("platform/chartlib/Projection.cpp", '#include "navmath/RLGC.h"\n#include "platform/api/Geo.h"\n', 0, ""),
    ("core/Types.h", '#include "platform/api/Geo.h"\n', 0, ""),
    ("instruments/Vessel.cpp", '#include "charts/Chart.h"\n#include "Vessel.h"\n', 0, ""),
    ("core/Registry.cpp", '#include "RegistryKeys.def"\n#include <vector>\n', 0, ""),
    ("app/cli/main.cpp", '#include "plotter/Plotter.h"\n#include "ui/FrmMain.h"\n', 0, ""),
    ("tests/core/test_x.cpp", '#include "ui/FrmMain.h"\n#include <QWidget>\n', 0, ""),
    ("bench/b.cpp", '#include "app/cli/CliCommand.h"\n', 0, ""),
    ("fuzz/f.cpp", '#include "plotter/Plotter.h"\n', 0, ""),
    ("navmath/Text.h", '// #include "ui/FrmMain.h" is only a comment here\n', 0, ""),
]

# Headers the cases name, so that includes resolve as in the real tree.
HEADERS = ["core/Types.h", "core/Val.h", "core/RegistryKeys.def", "charts/Chart.h", "navmath/RLGC.h",
           "navobjects/Routes.h", "ui/FrmMain.h", "instruments/Comm.h", "instruments/Vessel.h",
           "platform/api/Geo.h", "platform/api/Clock.h", "platform/fake/ScriptedDialogs.h", "plotter/Plotter.h",
           "tests/support/TestSupport.h", "app/cli/CliCommand.h", "data/table.inc"]


def run(root: Path) -> subprocess.CompletedProcess:
    return subprocess.run([sys.executable, str(CHECKER), str(root)], capture_output=True, text=True)


def tree(root: Path, extra: tuple[str, str] | None) -> None:
    for h in HEADERS:
        (root / h).parent.mkdir(parents=True, exist_ok=True)
        (root / h).write_text("#pragma once\n")
    if extra:
        path, text = extra
        (root / path).parent.mkdir(parents=True, exist_ok=True)
        (root / path).write_text(text)


class CheckLayers(unittest.TestCase):
    def test_each_case(self):
        for path, text, code, says in CASES:
            with self.subTest(path=path, text=text), tempfile.TemporaryDirectory() as d:
                tree(Path(d), (path, text))
                r = run(Path(d))
                self.assertEqual(r.returncode, code, r.stdout + r.stderr)
                if code:
                    faults = r.stdout.splitlines()
                    self.assertEqual(len(faults), 1, r.stdout)
                    self.assertIn(says, faults[0])

    def test_clean_tree_passes_and_faults_add_up(self):
        with tempfile.TemporaryDirectory() as d:
            root = Path(d)
            tree(root, None)
            self.assertEqual(run(root).returncode, 0)
            (root / "core/Val.h").write_text('#include "ui/FrmMain.h"\n#include "plotter/Plotter.h"\n')
            (root / "navmath/RLGC.h").write_text('#include "charts/Chart.h"\n')
            r = run(root)
            self.assertEqual(r.returncode, 1)
            self.assertEqual(sorted(r.stdout.splitlines())[0][:13], "core/Val.h:1:")
            self.assertEqual(len(r.stdout.splitlines()), 3, r.stdout)
            self.assertIn("3 include(s) break the floors", r.stderr)

    def test_a_wrong_root_is_not_a_clean_tree(self):
        with tempfile.TemporaryDirectory() as d:
            self.assertEqual(run(Path(d) / "nowhere").returncode, 2)


if __name__ == "__main__":
    unittest.main()
