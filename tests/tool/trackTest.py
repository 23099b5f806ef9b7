"""The track of a vessel in three formats: the points and lines that other readers find in them."""
import json
import unittest
import xml.etree.ElementTree as xml

from kalo import ROOT, Test, completed, run

GPX = "{http://www.topografix.com/GPX/1/1}"
KML = "{http://www.opengis.net/kml/2.2}"

# An epoch whose best sentence comes second; one with a void position; one after a gap; one behind
# the date line. Depths and speeds belong to the epoch that they follow.
LOG = completed(b"""$GPZDA,120000,14,03,2026,,*hh
$GPRMC,120000,A,1000.0000,N,17959.0000,E,10,90,140326,,*hh
$GPGGA,120000,1000.6000,N,17959.0000,E,2,08,0.9,10,M,46,M,,*hh
$SDDPT,50,0*hh
$GPGGA,120001,,,,,0,,,,M,,M,,*hh
$GPGLL,1000.6000,N,17959.4000,E,120002,A*hh
$GPGLL,1000.6000,N,17959.8000,E,120200,A*hh
$GPGLL,1000.6000,N,17959.8000,W,120201,A*hh
""")
PLACES = [(179.9833333, 10.01), (179.99, 10.01), (179.9966667, 10.01), (-179.9966667, 10.01)]
LINES = [[0, 1], [2], [3]]


def track(data, *options):
    status, out, err = run(["track", *options], data)
    assert (status, err) == (0, ""), err
    return out


class Track(Test):
    def testGeojson(self):
        features = json.loads(track(LOG))["features"]
        points = [each for each in features if each["geometry"]["type"] == "Point"]
        self.assertEqual([tuple(each["geometry"]["coordinates"]) for each in points], PLACES)
        self.assertEqual([each["properties"]["line"] for each in points], [0, 0, 1, 2])
        self.assertEqual(points[0]["properties"], {
            "line": 0, "time": "2026-03-14T12:00:00Z", "altitude": 10, "quality": 2, "satCount": 8,
            "hdop": 0.9, "speedOverGround": 5.14444, "courseOverGround": 90, "depth": 50})
        self.assertEqual(points[1]["properties"], {"line": 0, "time": "2026-03-14T12:00:02Z"})
        lines = [each["geometry"]["coordinates"] for each in features
                 if each["geometry"]["type"] == "LineString"]
        self.assertEqual([[tuple(place) for place in line] for line in lines], [PLACES[:2]])
        self.assertEqual(json.loads(track(b""))["features"], [])

    def testGpx(self):
        root = xml.fromstring(track(LOG, "--format", "gpx"))
        lines = [[(float(point.get("lon")), float(point.get("lat"))) for point in line]
                 for line in root.iter(GPX + "trkseg")]
        self.assertEqual(lines, [[PLACES[i] for i in line] for line in LINES])
        first = next(root.iter(GPX + "trkpt"))
        self.assertEqual([(each.tag.removeprefix(GPX), each.text) for each in first][:5],
                         [("ele", "10"), ("time", "2026-03-14T12:00:00Z"), ("fix", "dgps"),
                          ("sat", "8"), ("hdop", "0.9")])

    def testKml(self):
        root = xml.fromstring(track(LOG, "--format", "kml"))
        lines = [[tuple(map(float, place.split(","))) for place in each.text.split()]
                 for each in root.iter(KML + "coordinates")]
        self.assertEqual(lines, [[PLACES[i] for i in line] for line in LINES])
        self.assertEqual([each.text for each in root.iter(KML + "begin")][1], "2026-03-14T12:02:00Z")

    def testQualities(self):
        """GPX has words for two of them."""
        for quality, word in (1, None), (2, "dgps"), (3, "pps"), (4, None):
            log = completed(b"$GPGGA,120000,1000,N,01000,E,%d,08,0.9,10,M,46,M,,*hh\n" % quality)
            root = xml.fromstring(track(log, "--format", "gpx"))
            self.assertEqual([each.text for each in root.iter(GPX + "fix")], [word] if word else [])

    def testWithoutADate(self):
        log = completed(b"$GPGLL,1000,N,01000,E,120000,A*hh\n$GPGLL,1001,N,01000,E,120001,A*hh\n")
        for form, element, times in (("gpx", GPX + "trkpt", GPX + "time"), ("kml", KML + "LineString", KML + "TimeSpan")):
            root = xml.fromstring(track(log, "--format", form))
            self.assertTrue(list(root.iter(element)))
            self.assertEqual(list(root.iter(times)), [])

    def testThereAndBack(self):
        """Also where a line ends at its beginning, the farthest point stays."""
        log = completed(b"".join(b"$GPGLL,1000.%02d,N,01000,E,12000%d,A*hh\n" % (minutes, second)
                                 for second, minutes in enumerate((0, 30, 60, 30, 0))))
        points = xml.fromstring(track(log, "--format", "gpx", "--tolerance", "5")).iter(GPX + "trkpt")
        self.assertEqual([point.get("lat") for point in points], ["10.0000000", "10.0100000", "10.0000000"])

    def testThinning(self):
        # Along a meridian at 18.5 m/s, with one point 93 m to the side.
        log = completed(b"$GPZDA,120000,14,03,2026,,*hh\n" + b"".join(
            b"$GPGLL,1000.%02d00,N,00000.%s,E,1200%02d,A*hh\n" %
            (i, b"0500" if i == 20 else b"0000", i) for i in range(40)))
        for options, seconds in (
                ([], range(40)),
                (["--every", "15s"], [0, 15, 30]),
                (["--every", "200m"], [0, 11, 22, 33]),
                (["--every", "8s", "--every", "200m"], [0, 11, 22, 33]),
                (["--tolerance", "1"], [0, 19, 20, 21, 39]),
                (["--tolerance", "5"], [0, 19, 20, 21, 39]),
                (["--tolerance", "100"], [0, 39])):
            with self.subTest(options):
                root = xml.fromstring(track(log, "--format", "gpx", *options))
                times = [int(each.text[-3:-1]) for each in root.iter(GPX + "time")]
                self.assertEqual(times, list(seconds))

    def testVoyage(self):
        # The way along the points is the one that the summary names.
        voyage = ROOT / "examples/recordings/voyage.log"
        summary = json.loads(run(["summary", "--json", voyage])[1])["track"]
        self.assertEqual(len(list(xml.fromstring(run(["track", "--format", "gpx", voyage])[1])
                                  .iter(GPX + "trkpt"))), summary["fixes"])


if __name__ == "__main__":
    unittest.main()
