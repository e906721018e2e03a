#!/usr/bin/env python3
"""Make the plotter's magnetic coefficient files from an IAGA IGRF table.

The IAGA table (igrfNNcoeffs.txt) has one row a coefficient ("g n m" or
"h n m") and one column an epoch, then the secular variation. The plotter
reads one file an epoch, in the layout of the old NSSDC model files:

    line 1   a title (skipped by the reader)
    line 2   maximum degree, reference radius (km), epoch year
    then     one line "n m g h" for every n = 1..max and m = 0..n
             (h is 0 for m = 0; values in nanotesla)

Files are "DGRFyy.DAT" for the definitive epochs, "IGRFyy.DAT" for the
latest, and "IGRFyyS.DAT" for the secular variation after the latest epoch
(nanotesla a year). Only epochs from 1945 are written: two-digit years name
the files, and 1900-1940 would share names with 2000-2040.

The maximum degree of each file is the highest degree with a non-zero
coefficient (10 up to 1995, 13 from 2000, 8 for the secular variation).

    tools/igrf/make_igrf_dat.py /path/to/igrf14coeffs.txt data/install/dat
"""
import os
import sys

FIRST_EPOCH = 1945
RADIUS_KM = "6371.2"


def read_table(path):
    kinds, epochs, rows = None, None, []
    with open(path, encoding="ascii") as f:
        for line in f:
            words = line.split()
            if not words or line.startswith("#"):
                continue
            if words[0] == "c/s":
                kinds = words[3:]
            elif words[0] == "g/h":
                epochs = words[3:]
            elif words[0] in ("g", "h"):
                rows.append((words[0], int(words[1]), int(words[2]), words[3:]))
    if not kinds or not epochs or not rows:
        sys.exit(f"{path}: not an IGRF coefficient table")
    return kinds, epochs, rows


def column(rows, col):
    """{(n, m): [g, h]} for one column, as the table writes the numbers."""
    out = {}
    for gh, n, m, values in rows:
        out.setdefault((n, m), ["0", "0"])[0 if gh == "g" else 1] = values[col]
    return out


def max_degree(coeffs):
    return max(n for (n, m), (g, h) in coeffs.items() if float(g) != 0.0 or float(h) != 0.0)


def write_file(path, title, year, coeffs):
    nmax = max_degree(coeffs)
    lines = [title, f"{nmax:4d} {RADIUS_KM} {year:4d}"]
    for n in range(1, nmax + 1):
        for m in range(0, n + 1):
            g, h = coeffs.get((n, m), ["0", "0"])
            lines.append(f"{n:3d}{m:3d}{float(g):12.2f}{float(h):12.2f}")
    with open(path, "w", encoding="ascii", newline="") as f:
        f.write("\r\n".join(lines) + "\r\n")
    return nmax


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    table, out_dir = sys.argv[1], sys.argv[2]
    kinds, epochs, rows = read_table(table)
    os.makedirs(out_dir, exist_ok=True)
    latest = None
    for col, (kind, epoch) in enumerate(zip(kinds, epochs)):
        if "-" in epoch:  # the secular variation column, "2025-30"
            continue
        year = int(float(epoch))
        if year < FIRST_EPOCH:
            continue
        name = f"{kind}{year % 100:02d}.DAT"
        title = f"{kind} {year}.0  IGRF-14, IAGA Division V-MOD (doi:10.5281/zenodo.14012302)"
        nmax = write_file(os.path.join(out_dir, name), title, year, column(rows, col))
        print(f"{name}: degree {nmax}")
        latest = (kind, year)
    sv_col = len(epochs) - 1
    kind, year = latest
    name = f"{kind}{year % 100:02d}S.DAT"
    title = (f"{kind} {year}.0 secular variation {epochs[sv_col]} (nT/year)  "
             "IGRF-14, IAGA Division V-MOD (doi:10.5281/zenodo.14012302)")
    nmax = write_file(os.path.join(out_dir, name), title, year, column(rows, sv_col))
    print(f"{name}: degree {nmax}")


if __name__ == "__main__":
    main()
