"""Has GDAL, gpsbabel and xmllint read the tracks that `kalo track` writes.

    tracks.py TOOL SCHEMAS [FILE...]

Each reader must find as many points, and the same box, as `kalo summary` names. Without files: the
shipped recording, and what is below $KALO_RECORDINGS. The status is 1 for a difference.
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).parents[2]


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def gdal(path, layer):
    """Number of features of a layer and their box: west, south, east, north."""
    text = output("ogrinfo", "-ro", "-so", path, layer)
    box = re.search(r"Extent: \((.*), (.*)\) - \((.*), (.*)\)", text)
    return int(re.search(r"Feature Count: (\d+)", text)[1]), box and list(map(float, box.groups()))


def compare(tool, schemas, recording):
    track = json.loads(output(tool, "summary", "--json", recording)).get("track")
    if track is None:
        return 0
    box = [track[side] for side in ("west", "south", "east", "north")]
    faults = []

    def check(what, ours, theirs, tolerance=0):
        if abs(ours - theirs) > tolerance:
            faults.append(f"{what}: {theirs}, not {ours}")
    with tempfile.TemporaryDirectory() as folder:
        paths = {}
        for kind in ("geojson", "gpx", "kml"):
            paths[kind] = os.path.join(folder, "track." + kind)
            pathlib.Path(paths[kind]).write_text(output(tool, "track", "--format", kind, recording))
        for kind, schema in (("gpx", "Topografix_gpx11.xsd"), ("kml", "ogckml22.xsd")):
            output("xmllint", "--noout", "--nonet", "--schema", schemas / schema, paths[kind])
        lines = len(re.findall("<trkseg>", pathlib.Path(paths["gpx"]).read_text()))
        features = json.loads(pathlib.Path(paths["geojson"]).read_text())["features"]
        for kind, layer, count in (("gpx", "track_points", track["fixes"]),
                                   ("geojson", "track", len(features)), ("kml", "track", lines)):
            found, theirs = gdal(paths[kind], layer)
            check(f"GDAL, {kind}: features", count, found)
            for side, ours, other in zip(("west", "south", "east", "north"), box, theirs):
                if track["west"] <= track["east"]:  # else it goes over the date line
                    check(f"GDAL, {kind}: {side}", ours, other, 1e-6)
        points = output("gpsbabel", "-t", "-i", "gpx", "-f", paths["gpx"], "-o", "unicsv", "-F", "-")
        check("gpsbabel, gpx: points", track["fixes"], points.count("\n") - 1)
    print(f"{recording}: {track['fixes']} points, {lines} lines, {len(faults)} differences",
          *faults, sep="\n    ")
    return len(faults)


def main():
    folder = os.environ.get("KALO_RECORDINGS")
    paths = [pathlib.Path(name) for name in sys.argv[3:]] or [
        ROOT / "examples/recordings/voyage.log",
        *(sorted(pathlib.Path(folder).rglob("*")) if folder else ())]
    sys.exit(1 if sum(compare(sys.argv[1], pathlib.Path(sys.argv[2]), path)
                      for path in paths if path.is_file()) else 0)


main()
