#!/usr/bin/env python3
"""Makes the sample's acquisitions policies, ledgers and funds over the real library's locations and item types.

Writes ../acquisitions_policy_locations.csv, ../acquisitions_vendor_policies.csv, ../ledgers.csv,
../ledger_locations.csv and ../funds.csv. Run it from anywhere; it gives the same files each time. The locations, item
types and print locations are real; who orders, pays and receives is made up. Three locations of the law library have
no defaults, so that the program has something to remark on.
"""

import csv
import os

HERE = os.path.dirname(os.path.abspath(__file__))


def read(name):
    with open(os.path.join(HERE, "..", name), newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def line(*texts):
    """Several texts that name one record, as they stand in one cell."""
    return ",".join('"%s"' % text.replace('"', '""') if "," in text else text for text in texts)


def write(name, columns, rows):
    with open(os.path.join(HERE, "..", name), "w", newline="", encoding="utf-8") as file:
        writer = csv.DictWriter(file, columns, restval="", lineterminator="\r\n")
        writer.writeheader()
        writer.writerows(rows)


CENTRAL, LAW, MEDICAL = "Central Acquisitions", "Law Acquisitions", "Medical Acquisitions"
GROUPS = {"LAW": LAW, "MEDICAL": MEDICAL}

# Where each library's paper comes out; SULTS for all others.
PRINTERS = {"LAW": "LAWTS", "MUS": "MUSICTS", "SPEC": "SULMDCS", "ARS": "SULMDCS"}
# Those that order and pay, those that only receive, by location.
ORDERING = {"SUL-ACQUISITIONS", "LAW-TS", "MEDICAL-ACQ"}
RECEIVING = {"SUL-ACQUISITIONS", "SUL-TS-PROCESSING", "LAW-TS", "MEDICAL-ACQ", "MUS-PROCESSING-CIRC", "EAL-INPROCESS",
             "ARS-INPROCESS", "SPEC-INPROCESS", "MAPCTR-INPROCESS", "ART-PROCESSING-SERIALS"}
WITHOUT_DEFAULTS = {"LAW-CRES", "LAW-OUTDOOR-TRAVEL", "LAW-SHADOW-ORD"}
# Item types by a word in the location's code; books otherwise.
KINDS = [("MICRO", "m-microform"), ("ELECTRONIC", "m-electronic-resource"), ("ECOLL", "m-electronic-resource"),
         ("EPER", "m-electronic-resource"), ("PER", "m-periodical"), ("SERIALS", "m-periodical"),
         ("JOURNALS", "m-periodical"), ("NEWS", "m-newspaper"), ("MAP", "m-map"), ("MEDIA", "m-multimedia"),
         ("RECORDINGS", "m-sound-recording"), ("ARCH", "m-archival"), ("GAMES", "m-game"), ("EQUIP", "m-library-equipment-1")]

item_types = {row["code"] for row in read("item_types.csv")}
printers = {row["code"] for row in read("print_locations.csv")}
assert all(kind in item_types for _, kind in KINDS) and set(PRINTERS.values()) <= printers


def kind_of(place):
    return next((kind for word, kind in KINDS if word in place.split("-", 1)[-1]), "m-book")


# Some are in no group, so that there is something to take.
places = []
for number, row in enumerate(read("locations.csv")):
    code = row["code"]
    if number % 12 == 11 and code != "LAW-ATCIRCDESK":
        continue
    library = code.upper().split("-")[0].strip()
    kind = kind_of(code)
    bare = code in WITHOUT_DEFAULTS
    places.append({
        "location": code, "group": GROUPS.get(library, CENTRAL),
        "orders_claims_pays": "Y" if code in ORDERING else "N",
        "receives": "Y" if code in RECEIVING else "N",
        "is_destination": "N" if any(word in code for word in ("WITHDRAWN", "MIGRATE-ERR", "SEE-OTHER")) else "Y",
        "displays_temporary_records": "Y" if code in ORDERING or "NEWBOOK" in code else "N",
        "print_location": "" if bare else PRINTERS.get(library, "SULTS"),
        "order_item_type": "" if bare else kind,
        "receive_item_type": "" if code == "LAW-CRES" else kind})
write("acquisitions_policy_locations.csv",
      ["location", "group", "orders_claims_pays", "receives", "is_destination", "displays_temporary_records",
       "print_location", "order_item_type", "receive_item_type"], places)

# Vendor type, discount, claims, days between claims, days until an order is cancelled, by way of, order type.
CENTRAL_POLICIES = [
    ("AGT", 5, 6, 45, 365, "Agent's consolidation service", "Subscription"),
    ("AV", 10, 3, 60, 180, "Parcel, insured", "Firm Order"),
    ("BIND", "", 2, 30, "", "Bindery van", "Firm Order"),
    ("BOOK", 15, 3, 90, 240, "Parcel", "Firm Order"),
    ("ELEC", 0, 2, 14, 60, "Online access", "Subscription"),
    ("GIFT", "", "", "", "", "", "Gift"),
    ("MAP", 10, 2, 120, 365, "Tube, flat where possible", "Firm Order"),
    ("PUB", 20, 4, 60, 180, "Parcel", "Standing Order"),
    ("SOC", "", 2, 180, 540, "Surface mail", "Membership")]
POLICIES = {
    CENTRAL: CENTRAL_POLICIES,
    LAW: [("AGT", 3, 8, 30, 180, "Courier", "Continuation"), ("BOOK", 10, 3, 60, 180, "Parcel", "Firm Order"),
          ("PUB", 12, 6, 30, 120, "Courier", "Continuation"), ("SOC", "", 3, 90, 365, "", "Membership")],
    MEDICAL: [("AGT", 4, 6, 30, 180, "", "Subscription"), ("ELEC", 0, 3, 7, 30, "Online access", "Subscription")]}
order_types = {row["name"] for row in read("po_types.csv")}
vendor_types = {row["code"] for row in read("vendor_types.csv")}
policies = []
for group, rows in sorted(POLICIES.items()):
    for row in rows:
        assert row[0] in vendor_types and row[6] in order_types, row
        policies.append(dict(zip(
            ["vendor_type", "discount_percent", "claim_count", "claim_interval_days", "cancel_interval_days",
             "ship_via", "order_type"], row), group=group))
write("acquisitions_vendor_policies.csv",
      ["group", "vendor_type", "discount_percent", "claim_count", "claim_interval_days", "cancel_interval_days",
       "ship_via", "order_type"], policies)

# Ledgers of each year: name, group, the locations that spend from it, its funds (code, name, type).
LEDGERS = [
    ("Central Monographs", CENTRAL, ["SUL-ACQUISITIONS", "MAIN-STACKS"],
     [("HUM-M", "Humanities Monographs", "Allocated, Monographs"), ("SCI-M", "Science Monographs", "Allocated, Monographs"),
      ("APPR", "Approval Plans", "Approval Plans"), ("GIFT", "Friends of the Library", "Gift"),
      ("ENDOW", "Humanities Endowment", "Endowment")]),
    ("Central Serials", CENTRAL, ["SUL-ACQUISITIONS", "SUL-ELECTRONIC"],
     [("HUM-S", "Humanities Serials", "Allocated, Serials"), ("SCI-S", "Science Serials", "Allocated, Serials"),
      ("ERES", "Electronic Resources", "Electronic Resources"), ("BIND", "Binding", "Preservation and Binding"),
      ("ENDOW", "Science Endowment", "Endowment")]),
    ("Law", LAW, ["LAW-TS", "LAW-BASEMENT"],
     [("LAW-M", "Law Monographs", "Allocated, Monographs"), ("LAW-S", "Law Serials", "Allocated, Serials")]),
    ("Medical", MEDICAL, ["MEDICAL-ACQ", "MEDICAL-ECOLL"],
     [("MED-S", "Medical Serials", "Allocated, Serials"), ("MED-D", "Document Delivery", "Document Delivery"),
      ("MED-G", "Research Grant", "Grant")])]
YEARS = ["Fiscal Year %d" % year for year in range(2021, 2028)]
known = {row["code"] for row in read("locations.csv")}
periods = {row["name"] for row in read("fiscal_periods.csv")}
fund_types = {row["name"] for row in read("fund_types.csv")}
ledgers, spending, funds = [], [], []
for year in YEARS:
    assert year in periods, year
    for name, group, at, held in LEDGERS:
        ledgers.append({"fiscal_period": year, "name": name, "policy_group": group})
        for place in sorted(at):
            assert place in known, place
            spending.append({"ledger": line(year, name), "location": place})
        for code, title, kind in sorted(held):
            assert kind in fund_types, kind
            funds.append({"ledger": line(year, name), "code": code, "name": title, "fund_type": kind})
write("ledgers.csv", ["fiscal_period", "name", "policy_group"], ledgers)
write("ledger_locations.csv", ["ledger", "location"], spending)
write("funds.csv", ["ledger", "code", "fund_type", "name"], funds)
