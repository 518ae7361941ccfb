#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the table of scripts/bench from the JSON files of the benchmark programs.

    table.py FILE...                   prints the table; fails if a figure is missed
    table.py --smoke FILE...           only checks for errors
    table.py --merge OUTPUT FILE...    writes all results into one file
"""
import json
import sys

# Rows that compare the library with a peer: our benchmark, the peer's benchmark, kind, figure. Kinds:
# "time" is our time divided by the peer's, at most the figure; "rate" is our requests per second
# divided by the peer's, at least the figure; "faster" is the peer's time divided by ours, at least the
# figure. A row without a figure has no target.
PEERS = [
    (f"route/quorvelkit/{n}", f"route/{peer}/{n}", kind, figure)
    for n, on_demand, nlohmann in ((1000, 2.0, 9), (100000, 1.5, 12), (1000000, 1.5, 12))
    for peer, kind, figure in (
        ("ondemand_structs", "time", on_demand),
        ("nlohmann", "faster", nlohmann),
        ("rapidjson", "time", None),
    )
] + [
    (f"{what}/quorvelkit/{n}", f"{what}/{peer}/{n}", "time", None)
    for what in ("candidates", "suggestions")
    for n in (50, 5000)
    for peer in ("ondemand_structs", "nlohmann", "rapidjson")
] + [
    (f"{what}/{ours}/{n}", f"{what}/{peer}/{n}", "time", None)
    for what, ours in (
        ("member", "quorvelkit_view"),
        ("member", "quorvelkit"),
        ("member", "quorvelkit_getValue"),
        ("any_key", "quorvelkit"),
        ("index", "quorvelkit_view"),
        ("index", "quorvelkit"),
        ("path_read", "quorvelkit"),
        ("path_write_parsed", "quorvelkit"),
        ("path_write_changed", "quorvelkit"),
        ("iterate", "quorvelkit_view"),
        ("iterate", "quorvelkit"),
        ("serialise", "quorvelkit"),
    )
    for n in (9, 1000)
    for peer in ("rapidjson", "nlohmann")
] + [
    ("parse_numbers/quorvelkit/1000", "parse_numbers/from_chars/1000", "time", None),
    ("number_text/quorvelkit/1000", "number_text/to_chars/1000", "time", None),
    ("fetch_1kB/quorvelkit/64", "fetch_1kB/multi/64", "rate", 0.85),
    ("fetch_1kB/quorvelkit/64", "fetch_1kB/qt/64", "rate", 5),
    ("fetch_1kB/quorvelkit/1", "fetch_1kB/easy/1", "rate", 0.6),
    ("fetch_1kB/quorvelkit/1", "fetch_1kB/qt/1", "rate", None),
    ("fetch_1MB/quorvelkit/64", "fetch_1MB/multi/64", "rate", 0.85),
    ("fetch_1MB/quorvelkit/64", "fetch_1MB/multi_keep/64", "rate", 1),
    ("fetch_1MB/quorvelkit/64", "fetch_1MB/qt/64", "rate", None),
    ("fetch_1MB/quorvelkit/1", "fetch_1MB/easy/1", "rate", 0.95),
    ("fetch_1MB/quorvelkit/1", "fetch_1MB/qt/1", "rate", None),
    *((f"call_64/{form}", "call_64/handler", "time", 1.1)
      for form in ("onResult", "co_await", "future", "wait")),
    ("load/quorvelkit", "load/libcurl", "time", None),
    ("include/quorvelkit", "include/standard", "time", 1.43),
]

# Rows about the library alone: benchmark, counter (None: the time), unit, factor, and the maximum (a
# number, or the name of a counter: 1.2 times its value).
OWN = [
    row
    for n in (1000, 100000, 1000000)
    for row in (
        (f"route/quorvelkit/{n}", "alive/point", "bytes alive a point", 1, 210),
        (f"route/quorvelkit/{n}", "peak/point", "bytes at peak a point", 1, "alive/point"),
    )
] + [
    ("member/quorvelkit_view/9", "per item", "ns a look-up", 1, 8),
] + [
    (f"fetch_{size}/{who}", "cpu_us/request", "us processor a request", 1, None)
    for size in ("1kB", "1MB")
    for who in ("quorvelkit/64", "multi/64", "qt/64", "quorvelkit/1", "easy/1", "qt/1")
] + [
    ("road/quorvelkit/1000", None, "us a route", 1e-3, None),
] + [
    row
    for request in ("login", "configuration", "route", "candidates", "suggest", "reverse_geocode")
    for row in (
        (f"url/{request}", "items_per_second", "thousand URLs a second", 1e-3, None),
        (f"url/{request}", "allocations", "allocations a URL", 1, None),
    )
] + [
    ("map/view/100000", None, "ms processor, GUI thread", 1e-6, 20),
    ("map/screen/100000", None, "ms processor, GUI thread", 1e-6, 20),
    ("call/first", None, "us", 1e-3, None),
    ("call/second", None, "us", 1e-3, None),
    ("include/quorvelkit", None, "ms, source with QVNavigation.h", 1e-6, None),
    ("size/stripped", "bytes", "kB stripped", 1e-3, 700),
]

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def load(files):
    runs = []
    for name in files:
        with open(name, encoding="utf-8") as file:
            runs += json.load(file)["benchmarks"]
    return runs


def medians(runs):
    """The median run of each benchmark under its plain name, its time in nanoseconds."""
    found = {}
    for run in runs:
        if run.get("run_type") == "aggregate" and run.get("aggregate_name") != "median":
            continue
        name = run["run_name"]
        real = False
        for suffix in ("/real_time", "/manual_time", "/iterations:1"):
            if name.endswith(suffix):
                name, real = name.removesuffix(suffix), True
        # Processor time for benchmarks with one thread: other processes do not influence it.
        time = run["real_time" if real else "cpu_time"] * NANOSECONDS[run["time_unit"]]
        found[name] = {**run, "time": time}
        if run.get("items_per_second"):
            found[name]["per item"] = 1e9 / run["items_per_second"]
    return found


def human(nanoseconds):
    for unit, factor in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= factor:
            return f"{nanoseconds / factor:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def peer_row(found, ours, peer, kind, figure):
    mine, other = found[ours]["time"], found[peer]["time"]
    if kind == "rate":
        mine, other = (found[name]["items_per_second"] for name in (ours, peer))
        shown = [f"{mine:,.0f}/s", f"{other:,.0f}/s"]
    else:
        shown = [human(mine), human(other)]
    ratio = other / mine if kind == "faster" else mine / other
    sign = "<=" if kind == "time" else ">="
    met = None if figure is None else (ratio <= figure if kind == "time" else ratio >= figure)
    target = "" if figure is None else f"{sign} {figure} x"
    return [ours, *shown, peer, f"{ratio:.2f} x", target, met]


def own_row(found, name, counter, unit, factor, figure):
    value = found[name]["time" if counter is None else counter] * factor
    if isinstance(figure, str):
        figure = round(1.2 * found[name][figure], 1)
    met = None if figure is None else value <= figure
    return [name, f"{value:.4g}", "", unit, "", "" if figure is None else f"<= {figure}", met]


def main(arguments):
    smoke = arguments[:1] == ["--smoke"]
    if arguments[:1] == ["--merge"]:
        with open(arguments[1], "w", encoding="utf-8") as file:
            json.dump({"benchmarks": load(arguments[2:])}, file, indent=1)
        return 0
    runs = load(arguments[1:] if smoke else arguments)
    errors = [f"{run['name']}: {run['error_message']}" for run in runs if run.get("error_occurred")]
    if errors or not runs:
        print("\n".join(errors) or "no results", file=sys.stderr)
        return 1
    if smoke:
        print(f"{len(runs)} benchmarks ran without errors")
        return 0
    found = medians(runs)
    rows = [peer_row(found, *row) for row in PEERS] + [own_row(found, *row) for row in OWN]
    table = [["benchmark", "ours", "peer's", "peer, or unit", "ratio", "target", "met"]]
    table += [row[:-1] + [{None: "", True: "yes", False: "NO"}[row[-1]]] for row in rows]
    widths = [max(len(row[i]) for row in table) for i in range(len(table[0]))]
    for row in table:
        print("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())
    missed = sum(row[-1] is False for row in rows)
    print(f"{missed} figures missed" if missed else "every figure is met")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
