#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Generates town.geojson, the fictional built-in town of the sandbox. The output is deterministic.

    python3 make_town.py > town.geojson

Units: meters, x to the east and y to the north of the center. The streets of the grid are straight in
the plan; plan() converts positions of the plan to positions in the town, where streets are curved.
"""
import json
import math
import random

LATITUDE, LONGITUDE = 40.4500, -38.2500  # In the open sea.
random.seed(1848)

features = []
next_way, next_node = 1_210_000_001, 7_300_000_001


def plan(x, y):
    """Converts a position of the plan to a position in the town."""
    u = x + 110 * math.sin(y / 720 + 0.6) + 35 * math.sin(x / 310 + y / 420)
    v = y + 95 * math.sin(x / 830 - 0.4) + 28 * math.sin((x + y) / 350)
    return u * 0.978 - v * 0.208, u * 0.208 + v * 0.978


def degrees(point):
    x, y = point
    longitude = LONGITUDE + x / (111_320 * math.cos(math.radians(LATITUDE)))
    return [round(longitude, 7), round(LATITUDE + y / 110_950, 7)]


def distance(a, b):
    return math.hypot(a[0] - b[0], a[1] - b[1])


def add_way(points, **tags):
    global next_way
    coordinates = []
    for point in points:
        position = degrees(point)
        if not coordinates or coordinates[-1] != position:
            coordinates.append(position)
    if len(coordinates) < 2:
        return
    tags = {key.replace("__", ":"): value for key, value in tags.items() if value}
    features.append({"type": "Feature", "id": f"w{next_way}",
                     "geometry": {"type": "LineString", "coordinates": coordinates},
                     "properties": tags})
    next_way += random.randint(1, 4000)


def add_area(points, **tags):
    global next_way
    ring = [degrees(point) for point in points]
    features.append({"type": "Feature", "id": f"a{next_way * 2}",
                     "geometry": {"type": "Polygon", "coordinates": [ring + ring[:1]]},
                     "properties": tags})
    next_way += random.randint(1, 4000)


def add_node(point, **tags):
    global next_node
    tags = {key.replace("__", ":"): value for key, value in tags.items() if value}
    features.append({"type": "Feature", "id": f"n{next_node}",
                     "geometry": {"type": "Point", "coordinates": degrees(point)},
                     "properties": tags})
    next_node += random.randint(1, 9000)


def offset(line, aside):
    """Returns the line, moved to its right by `aside` meters."""
    moved = []
    for i, point in enumerate(line):
        before, after = line[max(i - 1, 0)], line[min(i + 1, len(line) - 1)]
        length = distance(before, after)
        dx, dy = (after[0] - before[0]) / length, (after[1] - before[1]) / length
        moved.append((point[0] + dy * aside, point[1] - dx * aside))
    return moved


def bezier(a, b, c, d, steps=10):
    points = []
    for i in range(steps + 1):
        t, s = i / steps, 1 - i / steps
        points.append(tuple(s**3 * a[k] + 3 * s * s * t * b[k] + 3 * s * t * t * c[k] + t**3 * d[k]
                            for k in (0, 1)))
    return points


def smooth(points, step=45):
    """Returns a Catmull-Rom curve through the points, with a vertex about every `step` meters."""
    line = []
    for i in range(len(points) - 1):
        p0, p1 = points[max(i - 1, 0)], points[i]
        p2, p3 = points[i + 1], points[min(i + 2, len(points) - 1)]
        count = max(int(distance(p1, p2) / step), 1)
        for j in range(count):
            t = j / count
            line.append(tuple(0.5 * (2 * p1[k] + (p2[k] - p0[k]) * t
                                     + (2 * p0[k] - 5 * p1[k] + 4 * p2[k] - p3[k]) * t * t
                                     + (3 * p1[k] - p0[k] - 3 * p2[k] + p3[k]) * t**3)
                              for k in (0, 1)))
    return line + [points[-1]]


# --- The river and the streets on its banks ----------------------------------------------------

def river_x(y):
    return -420 + 210 * math.sin(y / 640) + 0.06 * y


def bank_point(y, aside):
    return plan(river_x(y) + aside, y)


# --- The grid: columns lead north, rows lead east ----------------------------------------------

COLUMNS = [
    (-2060, "Windmill Road", "tertiary"), (-1850, "Große Allee", "residential"),
    (-1640, "Thistledown Street", "residential"), (-1450, "Foundry Road", "secondary"),
    (-1270, "Cooper Street", "residential"), (-1080, "Saltmarsh Street", "residential"),
    (-900, "Kestrel Street", "tertiary"),
    (130, "Lantern Street", "residential"), (270, "Chandler Street", "residential"),
    (400, "Guildhall Street", "secondary"), (530, "Weaver Street", "residential"),
    (660, "Almond Street", "residential"), (800, "Harrow Avenue", "primary"),
    (960, "Larkspur Street", "residential"), (1130, "Rue de l'Étang", "residential"),
    (1310, "Juniper Street", "tertiary"), (1520, "Orchard Street", "residential"),
    (1740, "Beacon Hill Road", "secondary"), (1930, "Skylark Street", "residential")]
ROWS = [
    (-1290, "Tannery Road", "tertiary"), (-1120, "Bramble Street", "residential"),
    (-950, "Calle Peñón", "residential"), (-790, "South Parade", "secondary"),
    (-640, "Ropewalk", "residential"), (-500, "Mercer Street", "residential"),
    (-370, "Tinsmith Street", "residential"), (-240, "Commerce Street", "primary"),
    (-110, "Printers Row", "residential"), (20, "Assembly Street", "residential"),
    (150, "Observatory Street", "tertiary"), (290, "Hatters Lane", "residential"),
    (440, "Fenwick Avenue", "secondary"), (610, "Sorrel Street", "residential"),
    (790, "Åkervägen", "residential"), (970, "North Parade", "tertiary"),
    (1160, "Cedar Hollow", "residential")]
BRIDGES = {"South Parade": "Ferry Bridge", "Commerce Street": "Old Bridge",
           "Fenwick Avenue": "Fenwick Bridge"}
REFS = {"Commerce Street": "US 309", "Harrow Avenue": "SR 27", "Foundry Road": "CR 8",
        "Beacon Hill Road": "CR 8"}
PARK = (960, 1520, 290, 790)  # West, east, south, north. Without streets.
ROUNDABOUTS = {("Foundry Road", "Fenwick Avenue"), ("Foundry Road", "Commerce Street"),
               ("Foundry Road", "South Parade"),
               ("Beacon Hill Road", "South Parade"), ("Guildhall Street", "North Parade")}
ONEWAY = {"Lantern Street": "yes", "Chandler Street": "-1", "Weaver Street": "yes",
          "Almond Street": "-1", "Mercer Street": "yes", "Tinsmith Street": "-1",
          "Printers Row": "yes", "Assembly Street": "-1"}
SPEEDS = {"primary": "35 mph", "secondary": "35 mph", "tertiary": "30 mph", "residential": "25 mph"}
COLUMN_AT = {name: x for x, name, _ in COLUMNS}
ROW_AT = {name: y for y, name, _ in ROWS}
WEIGHT = ["primary", "secondary", "tertiary", "residential"]

attached = {}  # Roundabout -> the points where streets join it.


def in_park(x, y):
    return PARK[0] < x < PARK[1] and PARK[2] < y < PARK[3]


def missing(x0, y0, x1, y1, kind):
    """Whether the street between two crossings is left out. Through streets are complete."""
    if in_park((x0 + x1) / 2, (y0 + y1) / 2):
        return True
    if kind != "residential":
        return False
    outside = abs((x0 + x1) / 2 - 400) > 700 or abs((y0 + y1) / 2) > 650
    return random.random() < (0.27 if outside else 0.06)


def junction(x, y, toward):
    """Returns the end of a street at a crossing, or the point where it joins a roundabout."""
    for column, row in ROUNDABOUTS:
        if (COLUMN_AT[column], ROW_AT[row]) == (x, y):
            middle, far = plan(x, y), plan(*toward)
            length = distance(middle, far)
            point = tuple(middle[k] + (far[k] - middle[k]) * 24 / length for k in (0, 1))
            attached.setdefault((column, row), []).append(point)
            return point
    return plan(x, y)


def block_side(a, b):
    count = max(int(distance(a, b) / 50), 1)
    inner = [plan(a[0] + (b[0] - a[0]) * i / count, a[1] + (b[1] - a[1]) * i / count)
             for i in range(1, count)]
    return [junction(*a, b), *inner, junction(*b, a)]


def lay_street(name, kind, stops):
    """stops: positions of the plan in order; None interrupts the street."""
    line = []
    tags = {"highway": kind, "name": name, "ref": REFS.get(name), "oneway": ONEWAY.get(name),
            "maxspeed": SPEEDS[kind]}
    for before, after in zip(stops, stops[1:]):
        if before is None or after is None or missing(*before, *after, kind):
            if len(line) > 1:
                add_way(line, **tags)
            line = []
            continue
        side = block_side(before, after)
        if line and line[-1] != side[0]:  # A roundabout is between the two.
            add_way(line, **tags)
            line = []
        line += side if not line else side[1:]
        add_houses(name, side, kind)
    if len(line) > 1:
        add_way(line, **tags)


def area_of(point):
    x, y = point
    if x > 3300:
        return "Eastmere", "40110"
    if x < -2300:
        return "Tollgate", "40120"
    if x < -300:
        return "Marrowick", "40101"
    return "Marrowick", "40102" if y > -200 else "40103"


house_number = {}


def add_houses(name, line, kind):
    """Adds some house numbers, even ones on the right, 100 numbers for each block."""
    block = house_number.get(name, 0) + 100
    house_number[name] = block
    if kind == "primary":
        return
    right = offset(line, 15)
    left = offset(line, -15)
    for i in range(1, len(line) - 1, 3):
        city, code = area_of(line[i])
        number = block + 4 * i + 2 * random.randint(0, 1)
        point, number = (right[i], number) if random.random() < 0.5 else (left[i], number + 1)
        add_node(point, addr__housenumber=str(number), addr__street=name, addr__city=city,
                 addr__postcode=code, addr__state="Norland", addr__country="XQ")


def columns_and_rows():
    for x, name, kind in COLUMNS:
        lay_street(name, kind, [(x, y) for y, _, _ in ROWS])
    for y, name, kind in ROWS:
        west = [(x, y) for x, _, _ in COLUMNS if x < river_x(y) - 130]
        east = [(x, y) for x, _, _ in COLUMNS if x > river_x(y) + 130]
        quays = [(river_x(y) - 75, y), (river_x(y) + 75, y)]
        lay_street(name, kind, west + quays[:1])
        lay_street(name, kind, quays[1:] + east)
        if name in BRIDGES:
            add_way([plan(river_x(y) + aside, y) for aside in (-75, -40, 0, 40, 75)],
                    highway=kind, name=BRIDGES[name], ref=REFS.get(name), maxspeed=SPEEDS[kind],
                    bridge="yes", layer="1")


def river():
    ys = range(-9000, 9040, 120)  # Beyond the visible part of the map.
    add_area([bank_point(y, -46 - 8 * math.sin(y / 250)) for y in ys]
             + [bank_point(y, 46 + 8 * math.sin(y / 200)) for y in reversed(ys)],
             natural="water", water="river", name="River Marrow")
    for name, aside in (("West Quay", -75), ("Quayside", 75)):
        line = []
        for (y0, _, _), (y1, _, _) in zip(ROWS, ROWS[1:]):
            steps = 4
            line += [bank_point(y0 + (y1 - y0) * i / steps, aside) for i in range(steps)]
        line.append(bank_point(ROWS[-1][0], aside))
        add_way(line, highway="tertiary", name=name, maxspeed="25 mph")
        add_houses(name, line, "tertiary")


def roundabouts():
    for (column, row), arms in attached.items():
        middle = plan(COLUMN_AT[column], ROW_AT[row])
        angles = {math.atan2(y - middle[1], x - middle[0]): (x, y) for x, y in arms}
        ordered = sorted(angles)
        ring = []
        for here, following in zip(ordered, ordered[1:] + [ordered[0] + 2 * math.pi]):
            ring.append(angles[here])
            for i in (1, 2):
                angle = here + (following - here) * i / 3
                ring.append((middle[0] + 24 * math.cos(angle), middle[1] + 24 * math.sin(angle)))
        add_way(ring + ring[:1], highway="secondary", junction="roundabout", oneway="yes")


def lights():
    for x, _, column in COLUMNS:
        for y, _, row in ROWS:
            weights = sorted((WEIGHT.index(column), WEIGHT.index(row)))
            name = next(n for at, n, _ in COLUMNS if at == x), next(n for at, n, _ in ROWS if at == y)
            if weights[0] <= 1 and weights[1] <= 2 and name not in ROUNDABOUTS:
                add_node(plan(x, y), highway="traffic_signals")


# --- Around the town ---------------------------------------------------------------------------

MOTORWAY = smooth([(-4300, -2350), (-2600, -2330), (-900, -2150), (700, -1950), (2000, -1550),
                   (2750, -700), (2950, 300), (2850, 1500), (2500, 2900), (2300, 4000)], 80)
MOTORWAY_SIDE = 13


def along(line, meters):
    """Returns the point at a distance along a line, and the index of the vertex before it."""
    for i, (a, b) in enumerate(zip(line, line[1:])):
        step = distance(a, b)
        if meters <= step:
            return tuple(a[k] + (b[k] - a[k]) * meters / step for k in (0, 1)), i
        meters -= step
    return line[-1], len(line) - 2


def meters_to(line, point):
    """Returns the distance along a line to the vertex that is nearest to a point."""
    nearest = min(range(len(line)), key=lambda i: distance(line[i], point))
    return sum(distance(a, b) for a, b in zip(line[:nearest], line[1:nearest + 1]))


class Carriageway:
    """One direction of a motorway, split where ramps leave or join it."""

    def __init__(self, line, **tags):
        self.line, self.tags, self.cuts = line, tags, []

    def cut(self, meters):
        point, _ = along(self.line, meters)
        self.cuts.append((meters, point))
        return point

    def direction(self, meters, length=120):
        a, b = along(self.line, meters)[0], along(self.line, meters + 20)[0]
        step = distance(a, b)
        return tuple((b[k] - a[k]) / step * length for k in (0, 1))

    def build(self):
        walked, line = 0.0, [self.line[0]]
        cuts = sorted(self.cuts)
        for a, b in zip(self.line, self.line[1:]):
            step = distance(a, b)
            while cuts and cuts[0][0] <= walked + step:
                line.append(cuts.pop(0)[1])
                add_way(line, **self.tags)
                line = line[-1:]
            line.append(b)
            walked += step
        add_way(line, **self.tags)


def exit_sign(point, number):
    add_node(point, highway="motorway_junction", ref=number)


def ramp(carriageway, leaves, meters, end, end_direction, destination=None, number=None,
         kind="motorway_link", ref=None):
    """Adds a ramp from or to a carriageway. `end` is its other end, with the driving direction
    `end_direction`."""
    point = carriageway.cut(meters)
    along_it = carriageway.direction(meters)
    if leaves:
        line = bezier(point, tuple(point[k] + along_it[k] for k in (0, 1)),
                      tuple(end[k] - end_direction[k] for k in (0, 1)), end)
        if number:
            exit_sign(point, number)
    else:
        line = bezier(end, tuple(end[k] + end_direction[k] for k in (0, 1)),
                      tuple(point[k] - along_it[k] for k in (0, 1)), point)
    add_way(line, highway=kind, oneway="yes", maxspeed="35 mph", destination=destination, ref=ref)


def interchange(ways, arterial, crossing, number, toward, highway_toward):
    """Adds a diamond interchange: four ramps between the carriageways and a crossing arterial."""
    for way, name in zip(ways, highway_toward):
        meters = meters_to(way.line, crossing)
        side = way.direction(meters, 1)
        right = (side[1], -side[0])
        foot = min(arterial, key=lambda p: distance(p, (crossing[0] + right[0] * 75,
                                                        crossing[1] + right[1] * 80)))
        ahead = way.direction(meters, 130)
        ramp(way, True, meters - 420, foot, ahead, toward, number)
        ramp(way, False, meters + 420, foot, ahead, name)
        add_node(foot, highway="traffic_signals")


def motorway():
    north = Carriageway(offset(MOTORWAY, MOTORWAY_SIDE), highway="motorway", ref="I 46",
                        name="Bay Freeway", oneway="yes", maxspeed="65 mph")
    south = Carriageway(offset(MOTORWAY[::-1], MOTORWAY_SIDE), highway="motorway", ref="I 46",
                        name="Bay Freeway", oneway="yes", maxspeed="65 mph")
    both = (north, south)
    names = ("I 46 North", "I 46 South")

    # Foundry Road and Harrow Avenue continue to the south, South Parade and Fenwick Avenue to the east.
    foundry = smooth([plan(-1450, -1290), (-1330, -1750), (-1420, -2130), (-1500, -2330),
                      (-1560, -2700)], 40)
    add_way(foundry, highway="secondary", name="Gravel Pit Road", ref="CR 8", maxspeed="40 mph")
    interchange(both, foundry, nearest_crossing(foundry), "11", "Gravel Pit Road", names)
    causeway = smooth([(-3060, -796), (-3020, -1100), (-3120, -1500)], 40)
    add_way(causeway, highway="secondary", name="Causeway Road", ref="CR 3", maxspeed="40 mph")
    saltings = smooth([causeway[-1], (-3060, -1900), (-2960, -2330), (-3010, -2800)], 40)
    add_way(saltings, highway="secondary", name="Saltings Road", ref="CR 3", maxspeed="40 mph")
    interchange(both, saltings, nearest_crossing(saltings), "9", "Saltings Road", names)
    harrow = smooth([plan(800, -1290), (1090, -1430), (1180, -1750), (1240, -2050), (1290, -2500)],
                    40)
    add_way(harrow, highway="primary", name="Harrow Avenue", ref="SR 27", maxspeed="45 mph")
    interchange(both, harrow, nearest_crossing(harrow), "13", "Harrow Avenue", names)
    parade = smooth([plan(1930, -790), (2180, -420), (2560, -370), (2900, -260), (3250, -330),
                     (3560, -300)], 40)
    add_way(parade, highway="secondary", name="South Parade", maxspeed="40 mph")
    fenwick = smooth([plan(1930, 440), (2200, 900), (2550, 1270), (2860, 1350), (3200, 1480),
                      (3700, 1500)], 40)
    add_way(fenwick, highway="secondary", name="Fenwick Avenue", maxspeed="40 mph")

    # The spur to Eastmere leaves the motorway at a fork.
    spur = smooth([(3200, 480), (3500, 520), (3900, 480), (4300, 490), (4700, 570), (5000, 850),
                   (5130, 1400), (5080, 2300), (5150, 3200)], 60)
    spur_tags = {"highway": "motorway", "ref": "I 246", "name": "Eastmere Spur", "oneway": "yes",
                 "maxspeed": "55 mph"}
    east = Carriageway(offset(spur, MOTORWAY_SIDE), **spur_tags)
    west = Carriageway(offset(spur[::-1], MOTORWAY_SIDE), **spur_tags)
    fork = meters_to(north.line, (2950, 300))
    back = meters_to(south.line, (2950, 700))
    ramp(north, True, fork - 450, east.line[0], east.direction(0), "Eastmere", "16", ref="I 246")
    ramp(south, True, back - 450, east.line[0], east.direction(0), "Eastmere", "16", ref="I 246")
    ramp(north, False, fork + 900, west.line[-1], east.direction(0, -120), "I 46 North")
    ramp(south, False, back + 950, west.line[-1], east.direction(0, -120), "I 46 South")

    mill = smooth([parade[-1], (3900, -290), (4250, -150), (4440, 120), (4490, 500)], 40)
    add_way(mill, highway="secondary", name="Mill Road", ref="CR 14", maxspeed="35 mph")
    sound = smooth([mill[-1], (4490, 860), (4400, 1250), (4150, 1480), fenwick[-1]], 40)
    add_way(sound, highway="secondary", name="Sound Road", ref="CR 14", maxspeed="35 mph")
    interchange((east, west), mill + sound, (4490, 517), "2", "Mill Road",
                ("I 246 North", "I 246 West"))
    for carriageway in (north, south, east, west):
        carriageway.build()
    return mill, sound


def nearest_crossing(arterial):
    return min(MOTORWAY, key=lambda p: min(distance(p, q) for q in arterial))


def eastmere(mill, sound):
    """A smaller town to the east, with curved streets around one avenue."""
    gate = next(i for i, (_, y) in enumerate(mill) if y > 150)
    avenue = smooth([mill[gate], (4700, 170), (4950, 240), (5180, 420), (5500, 470)], 40)
    approach = avenue[:5]
    add_way(approach, highway="tertiary", name="Station Approach", maxspeed="25 mph")
    add_way(avenue[4:], highway="tertiary", name="Eastmere Avenue", maxspeed="30 mph")
    add_node(mill[gate], highway="traffic_signals")
    high = smooth([avenue[9], (4880, 20), (4840, -170), (4640, -250), (4560, -330)], 40)
    add_way(high, highway="tertiary", name="High Street", maxspeed="25 mph")
    crescent = smooth([high[5], (5060, -20), (5240, 60), (5330, 230), avenue[20]], 30)
    add_way(crescent, highway="residential", name="Żurawia Crescent", maxspeed="25 mph")
    close = smooth([crescent[8], (5290, -10), (5370, -90), (5460, -110)], 30)
    add_way(close, highway="residential", name="Curlew Close", maxspeed="25 mph")
    wynd = smooth([close[7], (5340, -170), (5400, -240), (5500, -260)], 30)
    add_way(wynd + [(5545, -262)], highway="residential", name="Gull Wynd", maxspeed="20 mph")
    court = smooth([wynd[-1], (5470, -330), (5400, -360), (5320, -340)], 25)
    add_way(court, highway="residential", name="Tern Court", maxspeed="20 mph")
    lane = smooth([high[9], (5000, -260), (5180, -220), close[4]], 30)
    add_way(lane, highway="residential", name="Heron Lane", maxspeed="25 mph")
    green = smooth([avenue[6], (4780, 330), (4960, 480), (5150, 620), (5330, 600), avenue[-2]], 30)
    add_way(green, highway="residential", name="Green Lane", maxspeed="25 mph")
    yard = smooth([green[9], (5010, 380), (5090, 400), avenue[14]], 30)
    add_way(yard, highway="residential", name="Cooper's Yard", oneway="yes", maxspeed="20 mph")
    for name, line in (("Mill Road", mill), ("Sound Road", sound), ("High Street", high),
                       ("Żurawia Crescent", crescent), ("Curlew Close", close),
                       ("Heron Lane", lane), ("Gull Wynd", wynd), ("Green Lane", green), ("Eastmere Avenue", avenue)):
        add_houses(name, line, "residential")


def northgate():
    """Curved streets north of the grid."""
    top = ROWS[-1][0]
    loops = [("Moorhen Crescent", 400, 800, 330), ("Fieldfare Way", 800, 1310, 400),
             ("Dunnock Drive", 1310, 1740, 290)]
    for name, x0, x1, height in loops:
        line = smooth([plan(x0, top), plan(x0 + 30, top + height * 0.6),
                       plan((x0 + x1) / 2, top + height), plan(x1 - 60, top + height * 0.7),
                       plan(x1, top)], 35)
        add_way(line, highway="residential", name=name, maxspeed="25 mph")
        add_houses(name, line, "residential")
        middle = line[len(line) // 2]
        close = smooth([middle, (middle[0] - 40, middle[1] + 110), (middle[0] + 30, middle[1] + 190)],
                       30)
        add_way(close, highway="residential", name=name.split()[0] + " Close", maxspeed="20 mph")
        across = smooth([line[4], plan((x0 + x1) / 2, top + height * 0.45), line[-6]], 35)
        add_way(across, highway="residential", name=name.split()[0] + " Walk", maxspeed="25 mph")
    loop = smooth([plan(1740, -1290), plan(1800, -1420), plan(1560, -1560), plan(1250, -1500),
                   plan(1130, -1290)], 35)
    add_way(loop, highway="residential", name="Plumtree Way", maxspeed="25 mph")
    add_houses("Plumtree Way", loop, "residential")


def tollgate():
    """A village to the west, on two main roads."""
    start = plan(-2060, -240)
    road = smooth([start, (-2500, -820), (-2800, -770), (-3060, -796), (-3400, -900), (-4100, -870)], 45)
    add_way(road, highway="primary", name="Tollgate Road", ref="US 309", maxspeed="45 mph")
    hill = smooth([road[12], (-2960, -500), (-2860, -250), (-2990, 20), (-2920, 260)], 30)
    add_way(hill[:4], highway="tertiary", name="Chapel Hill", maxspeed="25 mph", oneway="yes")
    add_way(hill[3:], highway="tertiary", name="Chapel Hill", maxspeed="25 mph")
    forge = smooth([hill[3], (hill[3][0] - 70, hill[3][1] - 20), road[16]], 25)
    add_way(forge, highway="residential", name="Forge Lane", maxspeed="20 mph")
    back = smooth([hill[5], (-2700, -330), (-2560, -180), (-2600, 40), (-2780, 120), hill[-4]], 30)
    add_way(back, highway="residential", name="Paddock Lane", maxspeed="25 mph")
    end = smooth([back[9], (-2480, 30), (-2400, 110), (-2420, 190)], 30)
    add_way(end, highway="residential", name="Ülker Close", maxspeed="20 mph")
    yard = smooth([end[4], (-2520, 130), (-2580, 190), (-2570, 250)], 30)
    add_way(yard, highway="residential", name="Bell Yard", maxspeed="20 mph")
    farm = smooth([hill[-1], (-2700, 420), (-2420, 440), plan(-2060, 440)], 40)
    add_way(farm, highway="tertiary", name="Fenwick Avenue", maxspeed="35 mph")
    for name, line in (("Tollgate Road", road), ("Chapel Hill", hill), ("Paddock Lane", back),
                       ("Ülker Close", end), ("Bell Yard", yard)):
        add_houses(name, line, "residential")


def park():
    x0, x1, y0, y1 = PARK
    edge = 22
    sides = [(x0 + edge, y0 + edge), (x1 - edge, y0 + edge), (x1 - edge, y1 - edge),
             (x0 + edge, y1 - edge)]
    outline = []
    for a, b in zip(sides, sides[1:] + sides[:1]):
        outline += [plan(a[0] + (b[0] - a[0]) * i / 8, a[1] + (b[1] - a[1]) * i / 8)
                    for i in range(8)]
    add_area(outline, leisure="park", name="Observatory Park")
    middle = plan(1250, 600)
    add_area([(middle[0] + (90 + 20 * math.sin(3 * a)) * math.cos(a),
               middle[1] + (55 + 12 * math.cos(2 * a)) * math.sin(a))
              for a in (i * math.pi / 16 for i in range(32))],
             natural="water", water="pond", name="Étang des Cygnes")
    add_way([plan(960, 540), plan(1050, 460), plan(1240, 470), plan(1420, 560), plan(1520, 610)],
            highway="footway", name="Swan Walk")
    drive = [plan(1180, 290), plan(1190, 350), plan(1230, 390), plan(1270, 350), plan(1310, 290)]
    add_way(drive, highway="service", name="Observatory Drive")
    add_node(plan(1230, 405), name="Marrowick Observatory", tourism="attraction",
             website="https://observatory.marrowick.example", phone="+1 555 0100")
    common = plan(-1650, 1500)
    add_area([(common[0] + 420 * math.cos(a) * (1 + 0.12 * math.sin(2 * a)),
               common[1] + 190 * math.sin(a)) for a in (i * math.pi / 14 for i in range(28))],
             leisure="park", name="Windmill Common")


# --- Places ------------------------------------------------------------------------------------

SHOPS = [
    ("amenity", "cafe", ["Café Müller", "The Copper Kettle", "Kaffe på hjørnet", "Second Breakfast"]),
    ("amenity", "restaurant", ["La Peña Azul", "Smørrebrød & Co.", "The Anchor Table", "Zur Alten Mühle"]),
    ("amenity", "pharmacy", ["Pharmacy at the Bridge", "Marrow Pharmacy"]),
    ("amenity", "school", ["Lantern Street School", "Fenwick Academy", "Eastmere Primary School"]),
    ("amenity", "hospital", ["Marrowick General Hospital"]),
    ("amenity", "library", ["Guildhall Library"]),
    ("amenity", "fuel", ["Beacon Fuel", "Tollgate Filling Station", "Bay Fuel"]),
    ("amenity", "post_office", ["Marrowick Post Office", "Eastmere Post Office"]),
    ("amenity", "cinema", ["Palace Cinema"]),
    ("shop", "bakery", ["Brot & Salz", "Boulangerie de l'Étang", "Miller's Daughter"]),
    ("shop", "supermarket", ["Greenbasket", "Harrow Market", "Quay Foods"]),
    ("shop", "bicycle", ["Spoke & Chain"]),
    ("shop", "books", ["The Paper Lantern", "Book Wharf"]),
    ("shop", "hardware", ["Tinsmith Hardware"]),
    ("shop", "florist", ["Larkspur Flowers"]),
    ("tourism", "hotel", ["Hotel Quayside", "The Old Tannery", "Bay View Inn"]),
    ("tourism", "museum", ["Museum of Printing", "Ropewalk Museum"])]


def places():
    houses = [f for f in features if "addr:housenumber" in f["properties"]]
    random.shuffle(houses)
    phone = 101
    for key, value, names in SHOPS:
        for name in names:
            house = houses.pop()
            if "Eastmere" in name:
                house = next(h for h in houses if h["properties"]["addr:city"] == "Eastmere")
            elif "Tollgate" in name:
                house = next(h for h in houses if h["properties"]["addr:city"] == "Tollgate")
            properties = {"name": name, key: value, **house["properties"]}
            if random.random() < 0.7:
                properties["phone"] = f"+1 555 0{phone}"
            if random.random() < 0.5:
                host = "".join(c for c in name.lower() if c in "abcdefghijklmnopqrstuvwxyz")
                properties["website"] = f"https://{host}.example"
            house["properties"] = properties
            phone += 1
    world = {"is_in__state": "Norland", "is_in__country": "Quorvel", "is_in__country_code": "XQ"}
    add_node(plan(400, -110), name="Marrowick", place="town", population="31200",
             postal_code="40102", **world)
    add_node((4860, 150), name="Eastmere", place="town", population="4800", postal_code="40110",
             **world)
    add_node((-2860, -250), name="Tollgate", place="village", population="640",
             postal_code="40120", **world)
    for name, x, y in (("Old Town", -1100, 100), ("Guildhall", 480, 20), ("Beacon Hill", 1740, 100),
                       ("Tannery", 700, -1000), ("Northgate", 500, 900)):
        add_node(plan(x, y), name=name, place="suburb", **world)


def join_up():
    """Removes unconnected streets. Opens one-way streets that make parts of the town unreachable."""
    streets = [f for f in features if "highway" in f["properties"]
               and f["geometry"]["type"] == "LineString"]

    def reached(forward, both_ways=False):
        steps = {}
        for street in streets:
            oneway = None if both_ways else street["properties"].get("oneway")
            line = [tuple(position) for position in street["geometry"]["coordinates"]]
            for a, b in zip(line, line[1:]):
                for start, end, closed in ((a, b, "-1"), (b, a, "yes")):
                    if oneway != closed:
                        steps.setdefault(start if forward else end, []).append(
                            end if forward else start)
        start = tuple(degrees(plan(800, -240)))
        found, waiting = {start}, [start]
        while waiting:
            for position in steps.get(waiting.pop(), []):
                if position not in found:
                    found.add(position)
                    waiting.append(position)
        return found

    connected = reached(True, both_ways=True)
    for street in list(streets):
        if tuple(street["geometry"]["coordinates"][0]) not in connected:
            features.remove(street)
            streets.remove(street)
    both = reached(True) & reached(False)
    for street in streets:
        if any(tuple(position) not in both for position in street["geometry"]["coordinates"]):
            if not street["properties"]["highway"].startswith("motorway"):
                street["properties"].pop("oneway", None)


# --- The surroundings: no addresses ------------------------------------------------------------

def round_area(points, **tags):
    """Adds an area with a smooth outline through the points."""
    line = smooth(points[-1:] + points + points[:2], 60)
    first = line.index(points[0])
    add_area(line[first:line.index(points[0], first + 1)], **tags)


def coast():
    shore = smooth([(6100, -9000), (6500, -7200), (6250, -5600), (6050, -4300), (5900, -3000),
                    (5750, -1900), (5860, -900), (5720, 100), (5840, 900), (5700, 1700),
                    (5900, 2600), (6400, 3400), (6250, 5000), (6600, 7000), (6300, 9000)], 180)
    add_area(shore + [(13000, 9000), (13000, -9000)], natural="water", name="Quorvel Bay")
    beach = [point for point in shore if -2600 < point[1] < 1500]
    inland = [(x - 75 - 35 * math.sin(y / 330), y) for x, y in beach]
    add_area(beach + inland[::-1], natural="beach", name="Bay Sands")


def built_up():
    town = [(-2140, -1370), (900, -1370), (1180, -1600), (1560, -1640), (1900, -1480),
            (2010, -1280), (2010, 1180), (1860, 1500), (1300, 1700), (700, 1620), (330, 1290),
            (-2140, 1240)]
    outline = []
    for a, b in zip(town, town[1:] + town[:1]):
        count = max(int(distance(a, b) / 100), 1)
        outline += [plan(a[0] + (b[0] - a[0]) * i / count, a[1] + (b[1] - a[1]) * i / count)
                    for i in range(count)]
    add_area(outline, landuse="residential", name="Marrowick")
    round_area([(4440, -360), (4620, -420), (5080, -430), (5440, -470), (5630, -260), (5580, 520),
                (5330, 690), (5060, 680), (4720, 420), (4420, 260)],
               landuse="residential", name="Eastmere")
    round_area([(-3060, -640), (-2760, -740), (-2480, -620), (-2400, 60), (-2380, 290),
                (-2900, 330), (-3080, 60)], landuse="residential", name="Tollgate")


def woods_and_water():
    round_area([(-6200, 1600), (-4600, 1300), (-3500, 1650), (-2850, 2150), (-2450, 2750),
                (-2700, 3500), (-2350, 4400), (-3100, 5600), (-6200, 6200)],
               landuse="forest", name="Tollgate Forest")
    round_area([(-400, 2150), (350, 2320), (1000, 2250), (1420, 2700), (1180, 3350), (1500, 4100),
                (900, 4700), (-100, 4300), (-720, 3050)], landuse="forest", name="Northgate Wood")
    round_area([(-2560, -2900), (-2050, -2700), (-1780, -3050), (-1930, -3650), (-2300, -4500),
                (-2840, -4300), (-2820, -3500)], landuse="forest", name="Gravel Pit Wood")
    round_area([(1850, -2600), (2650, -2250), (3500, -1450), (4150, -900), (4850, -1050),
                (5150, -1750), (4700, -2500), (4900, -3300), (4100, -3900), (3300, -3500),
                (2550, -3900), (1950, -3400)], landuse="forest", name="Mere Wood")
    mere = [(3350, -2150), (3700, -1700), (4200, -1550), (4520, -1850), (4300, -2350), (3750, -2650)]
    round_area(mere, natural="water", water="lake", name="Saddle Mere")
    add_way(smooth([(4450, -2000), (4800, -2080), (5150, -1960), (5450, -2060), (5850, -1980)], 40),
            waterway="stream", name="Mere Brook")
    round_area([(3250, 1950), (3800, 1780), (4420, 1880), (4620, 2450), (4150, 2900), (3420, 2650)],
               leisure="golf_course", name="Bay Links")
    for start, length, side in ((-1800, 900, 1), (-2500, 1200, -1), (-3500, 1400, 1),
                                (1500, 1300, -1), (2300, 1500, 1)):
        bank = [start - length * i / 16 if start < 0 else start + length * i / 16
                for i in range(17)]
        add_area([bank_point(y, 40 * side) for y in bank]
                 + [bank_point(y, (60 + 230 * math.sin(i * math.pi / 16) ** 0.7) * side)
                    for i, y in reversed(list(enumerate(bank)))], landuse="meadow")


def roads_beyond():
    """Continues the roads beyond the visible part of the map."""
    for side in (MOTORWAY_SIDE, -MOTORWAY_SIDE):
        for points in ([(-13000, -2900), (-8000, -2500), (-4300, -2350)],
                       [(2300, 4000), (2150, 5800), (2500, 9000)]):
            line = smooth(points, 200)
            add_way(offset(line if side > 0 else line[::-1], MOTORWAY_SIDE), highway="motorway",
                    ref="I 46", name="Bay Freeway", oneway="yes", maxspeed="65 mph")
    for points, tags in (
            ([(5150, 3200), (5200, 5000), (4900, 9000)],
             {"highway": "motorway", "ref": "I 246", "name": "Eastmere Spur"}),
            ([(-4100, -870), (-6000, -1000), (-13000, -700)],
             {"highway": "primary", "ref": "US 309", "name": "Tollgate Road"}),
            ([(-3010, -2800), (-3120, -4000), (-2950, -5600), (-3200, -9000)],
             {"highway": "secondary", "ref": "CR 3", "name": "Saltings Road"}),
            ([(-1560, -2700), (-1500, -3600), (-1700, -5200), (-1400, -9000)],
             {"highway": "secondary", "ref": "CR 8", "name": "Gravel Pit Road"}),
            ([(1290, -2500), (1420, -3400), (1250, -5000), (1500, -9000)],
             {"highway": "primary", "ref": "SR 27", "name": "Harrow Avenue"})):
        add_way(smooth(points, 150), **tags)


columns_and_rows()
river()
roundabouts()
lights()
eastmere(*motorway())
northgate()
tollgate()
park()
join_up()
places()
built_up()
coast()
woods_and_water()
roads_beyond()
print('{"type":"FeatureCollection","features":[')
print(",\n".join(json.dumps(f, ensure_ascii=False, separators=(",", ":")) for f in features))
print("]}")
