#!/usr/bin/env python3
"""Makes the sample's circulation policies out of the real library's tables in this folder.

Writes ../circulation_*.csv, ../calendar*.csv, ../request_*.csv, ../ub_policies.csv, ../patron_group_*.csv,
../patron_alerts.csv and ../automated_storage.csv, and into ../patron_groups.csv the limits of patron groups and the
second cluster's groups. Run it from anywhere; it gives the same files each time.
What a policy group's own flags, notices, calendars and alerts say is made up; docs/decisions.md says how the columns
of loan_rules.csv become fields.
"""

import csv
import datetime
import os

HERE = os.path.dirname(os.path.abspath(__file__))
SORT = "*"


def read(name):
    with open(os.path.join(HERE, name), newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def line(cells):
    def cell(text):
        plain = not any(c in text for c in ',"\r\n')
        return text if plain else '"' + text.replace('"', '""') + '"'
    return ",".join(cell(text) for text in cells)


def write(name, columns, rows):
    """Rows are dictionaries with their sort key under SORT; cells of several parts are tuples."""
    rows = sorted(rows, key=lambda row: row.get(SORT, ""))
    with open(os.path.join(HERE, "..", name), "w", newline="", encoding="utf-8") as file:
        file.write(line(columns) + "\r\n")
        for row in rows:
            cells = [row[column] for column in columns]
            file.write(line([line(c) if isinstance(c, tuple) else str(c) for c in cells]) + "\r\n")


def key(*parts):
    flat = []
    for part in parts:
        flat += part if isinstance(part, tuple) else (part,)
    return "\x01".join(flat)


# Groups and clusters stand in the sample already.
locations = read("../circulation_policy_locations.csv")
place_of = {row["location"]: tuple(next(csv.reader([row["group"]]))) for row in locations}
groups = sorted(set(place_of.values()) |
                {(row["cluster"], row["name"]) for row in read("../circulation_policy_groups.csv")})
cluster_of_name = {name: cluster for cluster, name in groups}
name_of_code = {row["code"]: row["name"] for row in read("owning_libraries.csv")}
rules = read("loan_rules.csv")
item_types = [row["code"] for row in read("item_types.csv")]

# --- Patron groups: a cluster has its own. The second one has them under names that tell them apart. ---
patrons = [row for row in read("../patron_groups.csv") if row["cluster"] == "MAIN"]
columns = list(patrons[0])
# How many items of all types: cardholders and guests few, who works or studies here as many as they like.
charge_limits = {"courtesy": 25, "visitor": 10, "law-guest": 15, "medical-guest": 15, "bus-guest": 25,
                 "law-alumni": 25, "sul-guest": 25, "sul-purchased": 50, "program-short-term": 25}
# How many demerits until a suspension of how many days.
demerits = {"undergrad": (50, 14), "graduate": (100, 14), "visitor": (20, 30), "courtesy": (20, 30)}
for row in patrons:
    limit, (most, days) = charge_limits.get(row["code"], ""), demerits.get(row["code"], ("", ""))
    row.update(limit_applies="Y" if limit else "N", charge_limit=limit, demerits_apply="Y" if most else "N",
               most_demerits=most, suspension_days=days,
               shows_charged_messages="Y" if row["code"] == "pseudopatron" else "N")
second = [dict(row, cluster="PROF", name=row["name"] + ", Professional Schools") for row in patrons]
write("patron_groups.csv", columns,
      [dict(row, **{SORT: key(row["cluster"], row["code"])}) for row in patrons + second])

CLUSTERS = ("MAIN", "PROF")
item_limits = {"undergrad": {"m-laptop": 1, "m-av-equipment-1": 2, "m-game": 3, "2-hour-reserve": 2},
               "graduate": {"m-laptop": 1, "m-av-equipment-1": 3, "2-hour-reserve": 3},
               "visitor": {"m-dvd": 2, "m-laptop": 0, "2-hour-reserve": 1},
               "courtesy": {"m-dvd": 5, "m-laptop": 0}}
write("patron_group_item_limits.csv", ["patron_group", "item_type", "charge_limit"],
      [{"patron_group": (cluster, code), "item_type": item, "charge_limit": limit,
        SORT: key((cluster, code), item)}
       for cluster in CLUSTERS for code, limits in item_limits.items() for item, limit in limits.items()])

# --- Universal borrowing: what who works or studies here may do elsewhere ---
ub_limits = ["balance", "items_borrowed", "overdue_items", "overdue_recalled_items", "self_shelf_returns",
             "claimed_returns", "lost_items", "requests", "demerits"]
ub_policies = {
    "faculty": {"items_borrowed": 100, "requests": 50},
    "graduate": {"balance": "50.00", "items_borrowed": 50, "overdue_items": 10, "lost_items": 3, "requests": 25},
    "postdoctoral": {"balance": "50.00", "items_borrowed": 50, "overdue_items": 10, "requests": 25},
    "staff": {"balance": "50.00", "items_borrowed": 25, "overdue_items": 5, "requests": 10},
    "undergrad": {"balance": "25.00", "items_borrowed": 20, "overdue_items": 3, "overdue_recalled_items": 1,
                  "claimed_returns": 2, "lost_items": 1, "requests": 10},
}
ub_columns = [column for limit in ub_limits for column in (limit + "_applies", "most_" + limit, limit + "_blocks_here")]


def ub_policy(cluster, code, most):
    row = {"patron_group": (cluster, code), SORT: key((cluster, code))}
    for limit in ub_limits:
        row[limit + "_applies"] = "Y" if limit in most else "N"
        row["most_" + limit] = most.get(limit, "")
        row[limit + "_blocks_here"] = "Y" if limit in most and limit in ("balance", "lost_items") else "N"
    return row


write("ub_policies.csv", ["patron_group"] + ub_columns,
      [ub_policy(cluster, code, most) for cluster in CLUSTERS for code, most in ub_policies.items()])

# As whom patrons of one cluster count in the other one.
mapped = ("faculty", "graduate", "staff", "undergrad", "visitor")
write("patron_group_mappings.csv", ["database", "patron_group", "other_group", "remote_group", "is_manual"],
      [{"database": "LOCAL", "patron_group": (cluster, code), "remote_group": "",
        "other_group": "" if code == "visitor" else (other, code), "is_manual": "Y" if code == "visitor" else "N",
        SORT: key((cluster, code))}
       for cluster, other in (CLUSTERS, CLUSTERS[::-1]) for code in mapped])

# --- Requests: which kinds there are, and the locations from which they may be filled ---
switches = [channel + "_" + level + "_" + kind for channel in ("opac", "circ", "web") for kind in ("hold", "recall")
            for level in ("title", "copy")]
taken = {"MAIN": set(switches) - {"opac_copy_recall", "web_copy_recall"},
         "PROF": {name for name in switches if name.startswith("circ")} | {"opac_title_hold", "web_title_hold"}}
write("request_configurations.csv", ["cluster"] + switches,
      [dict({name: "Y" if name in taken[cluster] else "N" for name in switches}, cluster=cluster)
       for cluster in CLUSTERS])
request_groups = {"ARTS": ("Arts and Humanities", ("ART", "CLASSICS", "EAST-ASIA", "MUSIC", "PHIL")),
                  "PROF": ("Professional Schools", ("BUSINESS", "LAW", "MEDICAL")),
                  "SCI": ("Sciences", ("EARTH-SCI", "ENG", "MARINE-BIO", "SCIENCE")),
                  "STORAGE": ("Storage", ("SAL", "SAL-NEWARK", "SAL3"))}
write("request_groups.csv", ["code", "name"],
      [{"code": code, "name": name} for code, (name, _) in request_groups.items()])
write("request_group_locations.csv", ["group", "location"],
      [{"group": code, "location": row["code"], SORT: key(code, row["code"])}
       for code, (_, libraries) in request_groups.items() for row in read("locations.csv")
       if row["owning_library_code"] in libraries])


# --- The matrix ---
def rule_of(row):
    """One line of loan_rules.csv as fields of the matrix."""
    unit, period = row["loan_unit"], row["loan_period"]
    grace, grace_unit = int(row["grace_period"] or 0), row["grace_unit"]
    if unit == "Hour" and grace_unit == "Minute" and not row["fine_rate"]:
        # Grace counts in the loan's unit: a loan without a fine by the hour counts in minutes, to keep it exact.
        unit, period = "Minute", str(int(period) * 60)
    elif unit == "Hour" and grace_unit == "Minute":
        grace = -(-grace // 60)  # in favour of the patron
    if unit == "Term":
        period = "1"
    letter = unit[0]
    fine_letter = {"T": "D"}.get(letter, letter)
    days = unit in ("Day", "Term")
    length = {"Day": int(period) if unit == "Day" else 0, "Term": 91, "Hour": 0, "Minute": 0}[unit]
    recall_fine = row["recall_fine_rate"] if days else ""
    courtesy = length >= 7
    return {
        "may_charge": row["may_borrow"],
        "allows_holds": row["hold"],
        "allows_recalls": row["recall"],
        "allows_call_slips": row["page"],
        "allows_universal_borrowing": "N",
        "loan_period": period,
        "loan_unit": letter,
        "grace_period": grace,
        "fine_rate": row["fine_rate"],
        "fine_unit": fine_letter,
        "most_fine": row["max_fine"],
        "most_renewals": row["max_renewals"] or "0",
        "renewal_period": period,
        "renewal_unit": letter,
        "renews_from_renewal_date": "N" if unit == "Term" else "Y",
        "recall_return_interval": row["recall_return_days"] or "0",
        "least_loan_when_recalled": row["min_loan_when_recalled"] or "0",
        "recall_grace_period": "0",
        "recall_fine_rate": recall_fine,
        "recall_fine_unit": fine_letter,
        "most_recall_fine": row["max_recall_fine"] if recall_fine else "",
        "limits_items": "N",
        "most_items": "0",
        "allows_bookings_on_overdue": "N",
        "due_at_next_fixed_time": "N",
        "warning_period": "0",
        "warning_unit": "D",
        "courtesy_interval": "3" if courtesy else "0",
        "least_loan_for_courtesy": "7" if courtesy else "0",
        "first_overdue_interval": "1",
        "lost_interval": "28" if days else "7",
        "overdue_count": "2",
        "overdue_interval": "7" if days else "2",
        "recall_notice_count": "2" if row["recall"] == "Y" else "0",
        "recall_notice_interval": "2" if row["recall"] == "Y" else "0",
        "hold_shelf_life": "7",
        "hold_shelf_unit": "D",
    }


entries = []
costs = {}
short_loans = set()
for row in rules:
    name = name_of_code[row["policy_group"]]
    group = (cluster_of_name[name], name)
    patron = (group[0], row["patron_group"])
    item = row["item_type"]
    entry = {"group": group, "patron_group": patron, "item_type": item, SORT: key(group, patron, item)}
    entry.update(rule_of(row))
    entries.append(entry)
    costs[group, item] = max(costs.get((group, item), 0.0), float(row["replacement_fee"] or 0))
    if "hour" in item:
        short_loans.add((group, item))
assert len({entry[SORT] for entry in entries}) == len(entries) == 3444
rule_columns = list(rule_of(rules[0]))
write("circulation_matrix.csv", ["group", "patron_group", "item_type"] + rule_columns, entries)

# --- Item settings: what a lost item costs is the most that any patron group pays ---
requests = [channel + "_" + kind + "_" + status for status in ("missing", "lost_by_system", "lost_by_library")
            for channel, kind in (("opac", "hold"), ("opac", "recall"), ("circ", "hold"), ("circ", "recall"))]
write("circulation_item_settings.csv",
      ["group", "item_type", "replacement_cost", "is_short_loan", "order_quantity", "reorder_point"] + requests,
      [dict({"group": group, "item_type": item, "replacement_cost": f"{cost:.2f}",
             "is_short_loan": "Y" if (group, item) in short_loans else "N",
             "order_quantity": "0", "reorder_point": "0", SORT: key(group, item)},
            **{column: "Y" if column == "circ_hold_missing" else "N" for column in requests})
       for (group, item), cost in costs.items()])

# --- Patron rules ---
limits = ["items_borrowed", "overdue_items", "overdue_recalled_items", "recalls", "self_shelf_returns",
          "claimed_returns", "lost_items", "call_slip_requests", "short_loans", "short_loan_titles",
          "short_loans_per_day", "hold_requests"]
reversed_limits = ("short_loans", "short_loan_titles", "short_loans_per_day")
emails = ["courtesy", "cancellation", "available", "overdue", "other_overdue", "other_recall", "recall"]
patron_rules = {
    "faculty": {"items_borrowed": 500},
    "graduate": {"items_borrowed": 300, "overdue_items": 25},
    "undergrad": {"items_borrowed": 100, "overdue_items": 10, "overdue_recalled_items": 1, "lost_items": 5},
    "visitor": {"items_borrowed": 10, "overdue_items": 3, "hold_requests": 5},
}


def patron_row(group, code, most):
    row = {"group": group, "patron_group": (group[0], code), SORT: key(group, (group[0], code)),
           "fines_apply": "Y", "most_balance": "25.00" if code == "visitor" else "100.00",
           "overdue_notice_applies": "Y", "courtesy_notice_applies": "Y", "least_balance_for_notice": "1.00",
           "opac_holds": "Y", "opac_recalls": "N" if code == "visitor" else "Y",
           "opac_call_slips": "Y", "opac_short_loans": "N", "holds_count_as_borrowed": "N"}
    for limit in limits:
        row[limit + "_applies"] = "Y" if limit in most else "N"
        row["most_" + limit] = most.get(limit, 0)
    for email in emails:
        row["email_" + email] = "Y"
    return row


def limit_columns(names):
    columns = []
    for name in names:
        pair = [name + "_applies", "most_" + name]
        columns += reversed(pair) if name in reversed_limits else pair
    return columns


with_rules = sorted({entry["group"] for entry in entries})
write("circulation_patron_rules.csv",
      ["group", "patron_group", "fines_apply", "most_balance", "overdue_notice_applies",
       "courtesy_notice_applies", "least_balance_for_notice"] + limit_columns(limits[:8]) +
      ["opac_holds", "opac_recalls", "opac_call_slips"] + ["email_" + email for email in emails] +
      ["opac_short_loans"] + limit_columns(limits[8:]) + ["holds_count_as_borrowed"],
      [patron_row(group, row["code"], patron_rules.get(row["code"], {})) for group in with_rules
       for row in patrons])

# --- Policy groups ---
flags = {"counts_closed_for_loan": "Y", "fixed_due_time_for_overnight": "Y", "counts_closed_for_fine": "N",
         "includes_lost_fee": "Y", "lost_fee": "20.00", "includes_most_fine_for_lost": "N",
         "early_pickup_minutes": "15", "unclaimed_minutes": "30", "extends_recall_due_date": "Y",
         "renews_if_recalled": "N", "renews_if_held": "N", "renews_if_overdue": "Y",
         "return_removes_overdue_fines": "Y", "return_removes_replacement_fee": "Y",
         "return_removes_processing_fee": "N", "return_decrements_lost_count": "Y",
         "credit_posting_type": "Lost Item Credit", "in_transit_fulfills_title_hold": "Y",
         "title_holds_without_items_in_circ": "Y", "title_holds_without_items_in_opac": "N"}
own_flags = {"Law Library": {"counts_closed_for_loan": "N", "counts_closed_for_fine": "N"},
             "Medical Library": {"counts_closed_for_fine": "Y", "renews_if_overdue": "N"},
             "Media Center": {"counts_closed_for_loan": "N", "fixed_due_time_for_overnight": "N"}}
write("circulation_policy_groups.csv", ["cluster", "name"] + list(flags),
      [dict(flags, cluster=cluster, name=name, **{SORT: key(cluster, name)})
       | own_flags.get(name, {}) for cluster, name in groups])

# --- Locations: desks and pickup locations have settings of their own ---
place_columns = ["location", "group", "is_desk", "is_opac_desk", "collects_fines", "courtesy_discharge",
                 "shelving_unit", "shelving_interval", "in_transit_days", "suppresses_items_on_the_fly",
                 "default_item_type", "default_location", "due_date_slip", "prints_hold_slip",
                 "prints_routing_slip", "prints_discharge_receipt", "prints_payment_receipt", "print_location",
                 "is_pickup", "automated_storage", "hold_days", "recall_days", "alerts_available_items",
                 "alerts_fines"]


def place(row):
    desk = row["is_desk"] == "Y"
    yes = "Y" if desk else "N"
    return {"location": row["location"], "group": place_of[row["location"]], SORT: row["location"],
            "is_desk": row["is_desk"], "is_opac_desk": row["is_opac_desk"], "is_pickup": row["is_pickup"],
            "collects_fines": yes, "courtesy_discharge": yes, "shelving_unit": "H" if desk else "D",
            "shelving_interval": "4" if desk else "0", "in_transit_days": "3" if desk else "0",
            "suppresses_items_on_the_fly": "N", "default_item_type": "can-circulate" if desk else "",
            "default_location": row["location"] if desk else "", "due_date_slip": "A" if desk else "N",
            "prints_hold_slip": yes, "prints_routing_slip": yes, "prints_discharge_receipt": "N",
            "prints_payment_receipt": yes, "print_location": "",
            "automated_storage": "N", "hold_days": "7" if row["is_pickup"] == "Y" else "0",
            "recall_days": "7" if row["is_pickup"] == "Y" else "0", "alerts_available_items": yes,
            "alerts_fines": yes}


write("circulation_policy_locations.csv", place_columns, [place(row) for row in locations])
desks = [row["location"] for row in locations if row["is_desk"] == "Y"]
write("patron_alerts.csv", ["name", "type"], [
    {"name": name, "type": kind} for name, kind in (
        ("Patron Record Expired", "P"), ("Address Not Verified", "P"), ("Recalled Items Overdue", "C"),
        ("Claimed Returns", "C"), ("Items in Transit to This Desk", "C"))])
write("circulation_location_alerts.csv",
      ["place", "alert", "display", "shows_name", "shows_barcode", "shows_phone"],
      [{"place": desk, "alert": alert, "display": display, "shows_name": "Y", "shows_barcode": "Y",
        "shows_phone": "N", SORT: key(desk, alert)}
       for desk in desks for alert, display in (("Patron Record Expired", "1"), ("Recalled Items Overdue", "2"))])
write("automated_storage.csv", ["is_retrieved_automatically"], [{"is_retrieved_automatically": "N"}])
misc = {"emails_fine_notice": "Y", "emails_fine_statement": "N", "short_loan_buffer_minutes": "15",
        "uses_demerits": "N", "displays_demerits": "N", "stops_fines_for_claims_returned": "Y",
        "deletes_patrons_with_historical_fines": "N", "ub_pickup_from_holding_library": "N"}
write("circulation_miscellaneous.csv", list(misc), [misc])

# --- Calendars: two years for each cluster ---
DAYS = ("sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday")
PARTS = ("open", "opens", "closes", "due", "in_effect")
CLOSED = ("N", "", "", "", "")


def hours(week, weekend, friday=None):
    sunday, saturday = weekend
    return dict(zip(DAYS, (sunday, week, week, week, week, friday or week, saturday)))


TERM = {"MAIN": hours(("Y", "08:00", "23:00", "10:00", "20:00"),
                      (("Y", "12:00", "23:00", "13:00", "20:00"), ("Y", "10:00", "18:00", "11:00", "16:00")),
                      ("Y", "08:00", "20:00", "10:00", "18:00")),
        "PROF": hours(("Y", "08:00", "21:00", "09:30", "18:00"),
                      (("Y", "13:00", "21:00", "14:00", "18:00"), CLOSED),
                      ("Y", "08:00", "18:00", "09:30", "16:00"))}
BREAK = {"MAIN": hours(("Y", "09:00", "18:00", "10:00", "16:00"),
                       (CLOSED, ("Y", "10:00", "16:00", "11:00", "14:00"))),
         "PROF": hours(("Y", "09:00", "17:00", "09:30", "15:00"), (CLOSED, CLOSED))}
EXAMS = {"MAIN": ("Y", "08:00", "02:00", "10:00", "22:00"), "PROF": ("Y", "08:00", "01:00", "09:30", "20:00")}


def monday(year, month, which):
    """The date of a month's Monday; -1 is the last one."""
    days = [datetime.date(year, month, 1) + datetime.timedelta(n) for n in range(31)]
    mondays = [day for day in days if day.month == month and day.weekday() == 0]
    return mondays[which]


def holidays(year):
    thanksgiving = [datetime.date(year, 11, day) for day in range(22, 29)
                    if datetime.date(year, 11, day).weekday() == 3][0]
    return [datetime.date(year, 1, 1), monday(year, 1, 2), monday(year, 2, 2), monday(year, 5, -1),
            datetime.date(year, 7, 4), monday(year, 9, 0), thanksgiving,
            thanksgiving + datetime.timedelta(1), datetime.date(year, 12, 24), datetime.date(year, 12, 25),
            datetime.date(year, 12, 31)]


calendars, exceptions, terms, chosen = [], [], [], []
for cluster in ("MAIN", "PROF"):
    for year in (2026, 2027):
        date = datetime.date
        # name, begin, end, weeks, end of term, days of examinations, fixed due date
        seasons = [
            ("Winter Term", date(year, 1, 1), date(year, 3, 21), TERM, date(year, 3, 20), (14, 20), ""),
            ("Spring Break", date(year, 3, 22), date(year, 3, 29), BREAK, None, None, ""),
            ("Spring Term", date(year, 3, 30), date(year, 6, 12), TERM, date(year, 6, 11), (5, 11),
             date(year, 6, 12) if cluster == "PROF" else ""),
            ("Summer", date(year, 6, 13), date(year, 9, 20), BREAK, date(year, 8, 14), None, ""),
            ("Autumn Term", date(year, 9, 21), date(year, 12, 18), TERM, date(year, 12, 11), (5, 11), ""),
            ("Winter Break", date(year, 12, 19), date(year, 12, 31), BREAK, None, None, ""),
        ]
        for season, begin, end, weeks, term, exams, due in seasons:
            name = f"{season} {year}"
            calendar = (cluster, name)
            row = {"cluster": cluster, "name": name, SORT: key(cluster, name),
                   "start_date": f"{begin:%Y%m%d}", "end_date": f"{end:%Y%m%d}",
                   "fixed_due_date": f"{due:%Y%m%d}" if due else ""}
            for day in DAYS:
                for part, value in zip(PARTS, weeks[cluster][day]):
                    row[f"{day}_{part}"] = value
            calendars.append(row)

            def except_on(day, values):
                exceptions.append(dict(zip(PARTS, values), calendar=calendar, date=f"{day:%Y%m%d}",
                                       **{SORT: key(calendar, f"{day:%Y%m%d}")}))

            closed = [day for day in holidays(year) if begin <= day <= end]
            for day in closed:
                except_on(day, CLOSED)
            if exams:
                for number in range(exams[0], exams[1] + 1):
                    day = datetime.date(year, term.month, number)
                    if day.weekday() < 5 and day not in closed:
                        except_on(day, EXAMS[cluster])
            if term:
                terms.append({"calendar": calendar, "date": f"{term:%Y%m%d}", "lead_days": "14",
                              SORT: key(calendar, f"{term:%Y%m%d}")})
            chosen += [{"group": group, "calendar": calendar, SORT: key(group, calendar)}
                       for group in groups if group[0] == cluster]
write("calendars.csv", ["cluster", "name", "start_date", "end_date", "fixed_due_date"] +
      [f"{day}_{part}" for day in DAYS for part in PARTS], calendars)
write("calendar_exceptions.csv", ["calendar", "date"] + list(PARTS), exceptions)
write("calendar_terms.csv", ["calendar", "date", "lead_days"], terms)
write("circulation_policy_calendars.csv", ["group", "calendar"], chosen)
