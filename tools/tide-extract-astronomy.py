#!/usr/bin/env python3
"""Extracts the equilibrium arguments (V0+u at the start of each year) and
node factors (middle of each year) that a tide database carries, for a few
constituents and years, from the text dump of Debian's tcd-utils:

    restore_tide_db /usr/share/xtide/harmonics-dwf-20191229-free.tcd dump
    python3 tools/tide-extract-astronomy.py dump.txt 2020 2035 M2 S2 ... > table.txt

Output: one line per constituent and year, "NAME YEAR V0U F".
"""
import sys


def main() -> int:
    path, first, last, names = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), sys.argv[4:]
    lines = [l.rstrip("\n") for l in open(path, encoding="latin-1")]
    body = [l for l in lines if l.strip() and not l.startswith("#")]
    k = 0
    count = int(body[k]); k += 1
    order = []
    for _ in range(count):
        order.append(body[k].split()[0]); k += 1
    start = int(body[k]); k += 1

    def table(k):
        years = int(body[k]); k += 1
        out = {}
        for name in order:
            assert body[k].split()[0] == name, body[k]
            k += 1
            vals = []
            while len(vals) < years:
                vals += [float(v) for v in body[k].split()]; k += 1
            out[name] = vals
        assert body[k].startswith("*END*")
        return out, k + 1

    args, k = table(k)
    factors, k = table(k)
    for name in names:
        for y in range(first, last + 1):
            i = y - start
            print(f"{name} {y} {args[name][i]:.2f} {factors[name][i]:.4f}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
