#!/usr/bin/env python3
"""Builds intubc.asc, the soil behaviour table, from the digitised 12-zone chart.

    build_soil_table.py POLYGONS.json > intubc.asc

POLYGONS.json holds the zones as polygons, friction ratio in percent against corrected tip
resistance in bar. Their edges are straight on the chart, whose resistance axis is logarithmic.

The table cuts the chart at each 0.1 % of friction ratio into bands, from below: the zone and its
lower bound as log10 of bar. Between two columns a reader draws the bound of a zone straight from
one to the other, and of all bounds that lie below a point it takes the last band. So a zone that
begins or ends between two columns also gets a band in the column just outside of it, with a bound
above that of the band that follows: there it covers nothing, but its bound crosses the next one
where the zone has its end.
"""

import json
import math
import sys

ZONES = [  # number, name, short name, tip resistance in bar over N
    (1, "sensitive fine grained", "SENSITIVE", 2),
    (2, "organic material", "ORGANIC", 1),
    (3, "clay", "CLAY", 1),
    (4, "silty clay to clay", "SI CLAY", 1.5),
    (5, "clayey silt to silty clay", "CL SILT", 2),
    (6, "sandy silt to clayey silt", "SA SILT", 2.5),
    (7, "silty sand to sandy silt", "SI SAND", 3),
    (8, "sand to silty sand", "SAND-SI SAND", 4),
    (9, "sand", "SAND", 5),
    (10, "gravelly sand to sand", "GR SAND", 6),
    (11, "very stiff fine grained (overconsolidated or cemented)", "STIFF FINE", 1),
    (12, "sand to clayey sand (overconsolidated or cemented)", "STIFF SAND", 2),
]
SOURCE = ("Robertson, P.K., Campanella, R.G., Gillespie, D., Greig, J. (1986), Use of piezometer "
          "cone data, In-Situ '86, ASCE")
GROUND = 2  # the zone below all bands has none of its own
STEP = 0.1  # percent of friction ratio from column to column
LAST = 80  # index of the last column, 8 %
BANDS = 7
LOWEST_TIP, HIGHEST_TIP = 1, 1000  # bar, ends of the chart
LEAST_BOUND = 0.0001  # a bound of 0 would mean: no band


def section(polygon, x):
    """Lower and upper edge of a zone at x, or None."""
    edges = []
    for (x1, y1), (x2, y2) in zip(polygon, polygon[1:]):
        if (x1 <= x) != (x2 <= x):
            edges.append(y1 + (y2 - y1) * (x - x1) / (x2 - x1))
    if len(edges) not in (0, 2):
        raise SystemExit(f"a zone is cut more than once at {x:.1f} %")
    return (min(edges), max(edges)) if edges else None


def column(zones, index):
    """Bands at a column, from below: [zone, bound, thickness]."""
    x = index * STEP + (1e-9 if index < LAST else -1e-9)
    cuts = {zone: section(polygon, x) for zone, polygon in zones.items() if zone != GROUND}
    bands = [[zone, cut[0], cut[1] - cut[0]] for zone, cut in cuts.items() if cut]
    return sorted(bands, key=lambda band: band[1] + band[2])


def leave_out_thinnest(bands, index):
    while len(bands) > BANDS:
        thinnest = min(bands, key=lambda band: band[2])
        print(f"{index * STEP:.1f} %: zone {thinnest[0]} left out, "
              f"{thinnest[2]:.3f} thick in log10", file=sys.stderr)
        bands.remove(thinnest)


def place(bands, zone):
    return next((at for at, band in enumerate(bands) if band[0] == zone), None)


def bound_above(columns, zone, inside, outside, x):
    """The bound of the band above the zone, at x between the two columns."""
    at = place(columns[inside], zone) + 1
    if at == len(columns[inside]):
        return math.log10(HIGHEST_TIP)
    above, bound, _ = columns[inside][at]
    there = place(columns[outside], above)
    far = columns[outside][there][1] if there is not None else bound
    return bound + (far - bound) * abs(x - inside * STEP) / STEP


def close_end(columns, zone, x, inside, outside):
    """Lets the bound of a zone that ends at x, between two columns, cross the next one there."""
    at = place(columns[inside], zone)
    if at is None or len(columns[outside]) == BANDS:
        print(f"{x:.3f} %: the end of zone {zone} has no band outside", file=sys.stderr)
        return
    start = columns[inside][at][1]
    crossing = bound_above(columns, zone, inside, outside, x)
    bound = start + (crossing - start) * STEP / abs(x - inside * STEP)
    into = place(columns[outside], columns[inside][at - 1][0]) + 1 if at > 0 else 0
    # Behind its end it must stay above the next band as far as that column serves.
    if outside > inside and into < len(columns[outside]):
        above = columns[outside][into][0]
        served = [bands[place(bands, above)][1] for bands in columns[outside:outside + 2]
                  if place(bands, above) is not None]
        bound = max([bound] + [value + 0.0005 for value in served])
    columns[outside].insert(into, [zone, bound, 0.0])


def close_ends(columns, zones):
    for zone in sorted(set(zones) - {GROUND}):
        first, last = (pick(x for x, y in zones[zone]) for pick in (min, max))
        if first > 0:
            outside = math.floor(first / STEP + 1e-6)
            if place(columns[outside], zone) is None:
                close_end(columns, zone, first, outside + 1, outside)
        outside = math.ceil(last / STEP - 1e-6)
        if outside < LAST and place(columns[outside], zone) is None:
            close_end(columns, zone, last, outside - 1, outside)


def build(zones):
    columns = [column(zones, index) for index in range(LAST + 1)]
    for index, bands in enumerate(columns):
        leave_out_thinnest(bands, index)
    close_ends(columns, zones)
    return columns


def number(value):
    return f"{value:.5f}".rstrip("0").rstrip(".")


def lines(columns):
    data = sum(len(bands) for bands in columns)
    header = [len(ZONES), 0, LAST, BANDS, STEP, 0, LAST * STEP, LOWEST_TIP, HIGHEST_TIP, GROUND,
              0.01, data]
    yield ",".join(number(value) for value in header)
    yield "0.8,10,1986"
    for at, (zone, name, short, divisor) in enumerate(ZONES, 1):
        yield f'{at},{zone},"{name}","{short}",{number(divisor)}'
    yield f'"{SOURCE}"'
    for bands in columns:
        cells = [f"{zone},{number(max(bound, LEAST_BOUND))}" for zone, bound, _ in bands]
        yield ",".join(cells + ["0,0"] * (BANDS - len(cells)))


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        polygons = json.load(file)["polygons"]
    zones = {int(zone): [(x, math.log10(y)) for x, y in points]
             for zone, points in polygons.items()}
    text = "".join(line + "\r\n" for line in lines(build(zones)))
    sys.stdout.buffer.write(text.encode("ascii"))


if __name__ == "__main__":
    main()
