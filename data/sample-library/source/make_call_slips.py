#!/usr/bin/env python3
"""Makes the sample's call slip queues, rules and no-fill reasons over the real library's locations and item types.

Writes ../call_slip_queues.csv, ../call_slip_rules.csv and ../no_fill_reasons.csv. Run it from anywhere; it gives the
same files each time. The locations are real; how they are routed is made up. Two rules can never be reached: one is
taken by the rule before it, one by two rules together.
"""

import csv
import os

HERE = os.path.dirname(os.path.abspath(__file__))


def read(name):
    with open(os.path.join(HERE, "..", name), newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def write(name, columns, rows):
    with open(os.path.join(HERE, "..", name), "w", newline="", encoding="utf-8") as file:
        writer = csv.DictWriter(file, columns, restval="", lineterminator="\r\n")
        writer.writeheader()
        writer.writerows(rows)


locations = {row["code"] for row in read("locations.csv")}
item_types = {row["code"] for row in read("item_types.csv")}

QUEUES = [  # code, name, default, patron, cataloging, circulation, processing, expire, archive, location, item type
    ("LAW", "Law Library Paging", "N", "Y", "N", "N", "H", "3D", "30D", "LAW-BASEMENT", "m-book"),
    ("MAIN-LOWER", "Main Stacks, Lower Levels", "Y", "Y", "N", "N", "H", "7D", "30D", "MAIN-STACKS", "m-book"),
    ("MAIN-UPPER", "Main Stacks, Upper Levels", "N", "Y", "N", "N", "H", "7D", "30D", "MAIN-STACKS", "m-book"),
    ("OFFSITE", "Offsite Storage", "N", "N", "Y", "N", "T", "48H", "90D", "INST-SAL3-STACKS", "m-unspecified"),
    ("READING", "Locked Stacks, Reading Room", "N", "Y", "N", "Y", "C", "90M", "365D", "MAIN-LOCKED-STK",
     "reading-room"),
]

write("call_slip_queues.csv",
      ["code", "location", "default_item_type", "name", "is_default", "shows_patron", "sets_cataloging_review",
       "sets_circulation_review", "processing", "expire_period", "expire_unit", "archive_period", "archive_unit"],
      [dict(zip(["code", "name", "is_default", "shows_patron", "sets_cataloging_review", "sets_circulation_review",
                 "processing"], q[:7]),
            expire_period=q[7][:-1], expire_unit=q[7][-1], archive_period=q[8][:-1], archive_unit=q[8][-1],
            location=q[9], default_item_type=q[10]) for q in QUEUES])

LC, DEWEY, OTHER = "0", "1", "8"
rules = []


def rule(queue, place="", kind="", numbers=None, years=("", ""), temporary="", temporary_type="", holdings=""):
    for code in (place, temporary, holdings):
        assert not code or code in locations, code
    for code in (kind, temporary_type):
        assert not code or code in item_types, code
    rules.append({
        "rank": len(rules) + 1, "item_location": place, "temporary_location": temporary, "holdings_location": holdings,
        "item_type": kind, "temporary_item_type": temporary_type, "queue": queue,
        "call_number_type": numbers[0] if numbers else "", "least_call_number": numbers[1] if numbers else "",
        "end_call_number": numbers[2] if numbers else "", "first_year": years[0], "end_year": years[1]})


# What is on reserve elsewhere is fetched from there, whatever its own location.
rule("MAIN-LOWER", temporary="MEDIA-CRES")
rule("READING", temporary_type="reading-room")

rule("OFFSITE", "MAIN-STACKS", "m-newspaper")
rule("READING", "MAIN-STACKS", years=("", 1850))
rule("MAIN-LOWER", "MAIN-STACKS", numbers=(LC, "A", "H"))
rule("MAIN-LOWER", "MAIN-STACKS", numbers=(LC, "H", "P"))
rule("MAIN-UPPER", "MAIN-STACKS", numbers=(LC, "P", ""))
rule("MAIN-LOWER", "MAIN-STACKS", numbers=(DEWEY, "", "500"))
rule("MAIN-UPPER", "MAIN-STACKS", numbers=(DEWEY, "500", ""))
rule("MAIN-UPPER", "MAIN-STACKS", numbers=(LC, "PR1", "PT"))         # never reached: the rule for P and what follows
rule("MAIN-LOWER", "MAIN-STACKS", numbers=(LC, "F1200", "HX"))       # never reached: the two rules from A to P
rule("MAIN-LOWER", "MAIN-STACKS")
rule("READING", "MAIN-LOCKED-STK")

rule("READING", "LAW-BASEMENT", years=("", 1900))
rule("LAW", "LAW-BASEMENT", numbers=(LC, "K", "KJ"))
rule("LAW", "LAW-BASEMENT")
rule("LAW", "LAW-FOLIO-BASEMENT")
rule("READING", "LAW-LOCKED")
rule("LAW", "LAW-STACKS1", "m-periodical", years=("", 1990))
rule("LAW", "LAW-STACKS2", "m-periodical", years=("", 1990))

rule("READING", "ARS-LOCKED")
rule("OFFSITE", "ARS-SAL3-STACKS", "m-sound-recording")
rule("OFFSITE", "ARS-SAL3-STACKS", numbers=(OTHER, "Box 1", "Box 400"))
rule("READING", "ARS-SAL3-STACKS")

for size in ("FLAT", "LARGE", "MEDIUM", "SMALL"):
    rule("READING", "ART-LOCKED-" + size)
rule("MAIN-LOWER", "ART-STACKS", numbers=(LC, "N", "NB"))
rule("MAIN-LOWER", "ART-STACKS", numbers=(LC, "TR", "TS"), years=(1980, ""))

rule("READING", "MUS-LOCKED")
rule("MAIN-UPPER", "MUS-STACKS", "m-score", numbers=(LC, "M1", "ML"))
rule("READING", "EAL-LOCKED")
rule("READING", "BUS-LOCKED")
rule("OFFSITE", "BUS-SAL3-STACKS", years=(1900, 2000))
rule("OFFSITE", "BUS-SAL3-STACKS")
rule("OFFSITE", "INST-SAL3-STACKS")
rule("OFFSITE", "MEDICAL-SAL3")
rule("OFFSITE", "SAL-FED-DOCS", holdings="SAL-FED-DOCS")
rule("OFFSITE", holdings="MEDICAL-SAL3X")

assert len(rules) == 40
write("call_slip_rules.csv", list(rules[0]), rules)

write("no_fill_reasons.csv", ["code", "description", "suppressed"], [
    {"code": code, "description": text, "suppressed": suppressed} for code, text, suppressed in [
        ("BINDERY", "At the bindery", "N"),
        ("CHARGED", "Charged to another patron", "N"),
        ("FRAGILE", "Too fragile to be moved", "N"),
        ("MISSING", "Missing", "N"),
        ("MOVED", "Being moved to offsite storage", "Y"),
        ("NOS", "Not on shelf", "N"),
        ("WRONG", "Call number does not exist", "N"),
    ]])
