// Draws the report from the data in the page. Every text of the input is set as text, never as markup.
"use strict";
(() => {
    const data = JSON.parse(document.getElementById("data").textContent);
    const byId = (id) => document.getElementById(id);

    // ---- texts

    // Marks that turn the direction of writing and control characters are shown, and have no effect.
    const shown = (text) =>
        String(text).replace(/[\u0000-\u001f\u007f-\u009f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff]/g,
            (c) => `\\u{${c.codePointAt(0).toString(16).toUpperCase()}}`);

    function element(name, attributes = {}, ...children) {
        const made = document.createElement(name);
        for (const [key, value] of Object.entries(attributes)) {
            made.setAttribute(key, value);
        }
        made.append(...children);
        return made;
    }

    const drawing = "http://www.w3.org/2000/svg";
    function shape(name, attributes = {}, ...children) {
        const made = document.createElementNS(drawing, name);
        for (const [key, value] of Object.entries(attributes)) {
            made.setAttribute(key, value);
        }
        made.append(...children);
        return made;
    }

    const show = (id) => { byId(id).hidden = false; };
    const plural = (count, one, many = one + "s") => `${count.toLocaleString("en")} ${count === 1 ? one : many}`;
    const fileOf = (path) => path.slice(path.lastIndexOf("/") + 1);
    const two = (number) => String(number).padStart(2, "0");

    // ---- time

    const second = 1000;
    const minute = 60 * second;
    const hour = 60 * minute;
    const day = 24 * hour;

    function instantText(time, digits = 0) {
        const text = new Date(time).toISOString();
        return `${text.slice(0, 10)} ${text.slice(11, digits === 0 ? 19 : 20 + digits)} UTC`;
    }

    function durationText(milliseconds) {
        const all = Math.round(milliseconds / second);
        if (milliseconds < minute) {
            return `${(milliseconds / second).toFixed(1)} s`;
        }
        return all < 3600 ? `${Math.floor(all / 60)} min ${all % 60} s`
            : all < 86400 ? `${Math.floor(all / 3600)} h ${Math.floor(all % 3600 / 60)} min`
                : `${Math.floor(all / 86400)} d ${Math.floor(all % 86400 / 3600)} h`;
    }

    const steps = [1, 2, 5, 10, 15, 30].map((n) => n * second)
        .concat([1, 2, 5, 10, 15, 30].map((n) => n * minute), [1, 2, 3, 6, 12].map((n) => n * hour),
            [1, 2, 7, 14, 30, 91, 182, 365, 1826, 3652, 9131, 18262, 36524, 91310, 182621, 365242].map((n) => n * day));

    function timeTicks(begin, end, most) {
        const step = steps.find((s) => (end - begin) / s <= most) || steps[steps.length - 1];
        const ticks = [];
        for (let time = Math.ceil(begin / step) * step; time <= end; time += step) {
            const date = new Date(time);
            const clock = `${two(date.getUTCHours())}:${two(date.getUTCMinutes())}`;
            const isMidnight = time % day === 0;
            ticks.push({v: time, label: step >= day || isMidnight ? date.toISOString().slice(0, 10)
                : step >= minute ? clock : `${clock}:${two(date.getUTCSeconds())}`});
        }
        return ticks;
    }

    function timesOf(differences) {
        let time = 0;
        return differences.map((difference) => (time += difference));
    }

    // The place of the value in a sorted list that is nearest to `wanted`.
    function nearest(list, wanted) {
        let low = 0;
        let high = list.length - 1;
        while (low < high) {
            const middle = (low + high) >> 1;
            if (list[middle] < wanted) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return low > 0 && wanted - list[low - 1] <= list[low] - wanted ? low - 1 : low;
    }

    // ---- colours

    // Each series also has a pattern of its own. For people who confuse red and green the colours
    // differ in blue or in lightness.
    const themes = {
        light: {series: ["#0a4f91", "#d1570a", "#3a3f45", "#1e8fc4", "#8a6d00", "#b0307a", "#008573", "#6a51a3"],
            quality: {4: "#0b5fa5", 5: "#2f8fd0", 3: "#6a51a3", 2: "#008573", 1: "#d1570a", 6: "#8a6d00", 7: "#3a3f45", 8: "#3a3f45", 0: "#b0307a", "-1": "#52606d"},
            grid: "#dde3e8", axis: "#8895a1"},
        dark: {series: ["#6db6f2", "#ff9a52", "#e8edf2", "#3a7fd0", "#d9b93b", "#f08cc0", "#3fc7ae", "#b8a3e8"],
            quality: {4: "#6db6f2", 5: "#2f86c8", 3: "#b8a3e8", 2: "#3fc7ae", 1: "#ff9a52", 6: "#d9b93b", 7: "#d5dbe1", 8: "#d5dbe1", 0: "#f08cc0", "-1": "#a9b5c1"},
            grid: "#2c3742", axis: "#7d8a96"}};
    const patterns = [null, [7, 3], [2, 3], [9, 3, 2, 3], [14, 4], [4, 4], [2, 6], [9, 3, 2, 3, 2, 3]];
    const isDark = window.matchMedia("(prefers-color-scheme: dark)");
    const isPrinted = () => document.documentElement.classList.contains("printing");
    const theme = () => themes[isDark.matches && !isPrinted() ? "dark" : "light"];
    const redraws = []; // what must be drawn again when the colours or the width change

    const patternText = (pattern) => pattern ? pattern.join(" ") : "none";
    const lineSample = (colour, pattern) =>
        shape("svg", {width: 30, height: 10, "aria-hidden": "true"},
            shape("line", {x1: 0, y1: 5, x2: 30, y2: 5, stroke: colour, "stroke-width": 2.5, "stroke-dasharray": patternText(pattern)}));

    // ---- the time that is shown and the time that is pointed at

    const whole = data.period ? [...data.period] : null;
    if (whole && whole[1] - whole[0] < second) {
        whole[0] -= second / 2;
        whole[1] += second / 2;
    }
    let view = whole ? [...whole] : null;
    // The time in which there are positions; null if that is not known.
    const ofTrack = (() => {
        const times = data.track.lines.flat().map((point) => point[0]).filter((time) => time !== null);
        const first = times.reduce((least, time) => Math.min(least, time), Infinity);
        const last = times.reduce((most, time) => Math.max(most, time), -Infinity);
        return last - first > second ? [first, last] : null;
    })();
    // What is shown first: a track that is a short part of the time would not be seen in all of it.
    const isTrackShort = ofTrack !== null && (ofTrack[1] - ofTrack[0]) < 0.2 * (whole[1] - whole[0]);
    // The time that holds nearly all records, if a few stray dates are so far away that it would be a point.
    const ofMost = (() => {
        const runs = data.presence.strips.flatMap((strip) => strip.runs).sort((a, b) => a[0] - b[0]);
        if (runs.length === 0) {
            return null;
        }
        const far = (whole[1] - whole[0]) / 20;
        const groups = [];
        for (const [begin, end, count] of runs) {
            const last = groups[groups.length - 1];
            if (last && begin - last.end <= far) {
                last.end = Math.max(last.end, end);
                last.count += count;
            } else {
                groups.push({begin, end, count});
            }
        }
        const most = groups.reduce((a, b) => b.count > a.count ? b : a);
        const others = groups.reduce((sum, group) => sum + group.count, 0) - most.count;
        const isPoint = whole[1] - whole[0] > Math.max(day, 1000 * (most.end - most.begin));
        return isPoint && others > 0 && 10 * others <= most.count ? {view: [Math.max(whole[0], most.begin - second), Math.min(whole[1], most.end + second)], others} : null;
    })();
    if (ofMost !== null) {
        view = ofMost.view;
    } else if (isTrackShort) {
        view = [...ofTrack];
    }
    let pointed = null;
    const viewers = [];  // called when another period is shown
    const pointers = []; // called when another instant is pointed at

    function setView(begin, end) {
        const length = Math.min(Math.max(end - begin, second / 5), whole[1] - whole[0]);
        const from = Math.min(Math.max((begin + end - length) / 2, whole[0]), whole[1] - length);
        if (Math.abs(from - view[0]) < 0.5 && Math.abs(from + length - view[1]) < 0.5) {
            return;
        }
        view = [from, from + length];
        viewers.forEach((viewer) => viewer());
        drawClock();
    }
    const zoom = (factor) => {
        const centre = pointed !== null && pointed >= view[0] && pointed <= view[1] ? pointed : (view[0] + view[1]) / 2;
        setView(centre - (centre - view[0]) * factor, centre + (view[1] - centre) * factor);
    };
    const pan = (share) => {
        const step = (view[1] - view[0]) * share;
        setView(view[0] + step, view[1] + step);
    };
    function pointAt(time) {
        pointed = time;
        pointers.forEach((pointer) => pointer());
        drawClock();
    }
    function drawClock() {
        byId("clock").textContent = pointed !== null ? instantText(pointed, 1)
            : `${instantText(view[0]).slice(0, 19)} to ${instantText(view[1])}`;
    }
    function keyOf(event) {
        if (event.ctrlKey || event.metaKey || event.altKey) {
            return;
        }
        const step = (view[1] - view[0]) / 100;
        const move = (direction) => {
            if (event.shiftKey) {
                pan(direction / 4);
                return;
            }
            const from = pointed === null ? (view[0] + view[1]) / 2 : pointed;
            pointAt(Math.min(Math.max(from + direction * step, whole[0]), whole[1]));
            if (pointed < view[0] || pointed > view[1]) {
                pan(direction / 4);
            }
        };
        const actions = {
            ArrowLeft: () => move(-1), ArrowRight: () => move(1),
            "+": () => zoom(0.5), "=": () => zoom(0.5), "-": () => zoom(2),
            Home: () => setView(...whole), Escape: () => pointAt(null)};
        const action = actions[event.key];
        if (action) {
            action();
            event.preventDefault();
        }
    }

    // ---- plots over time

    // File names without what they have in common at the start and at the end.
    const shortNames = (() => {
        const names = data.inputs.map((input) => fileOf(input.name));
        const first = names[0] || "";
        let begin = 0;
        let end = 0;
        while (begin < first.length && names.every((name) => name[begin] === first[begin])) {
            ++begin;
        }
        while (end < first.length && names.every((name) => name[name.length - 1 - end] === first[first.length - 1 - end])) {
            ++end;
        }
        const isPart = (name) => name.length - begin - end > 0;
        begin = first.slice(0, begin).search(/[-_. ][^-_. ]*$/) + 1;
        const tail = first.slice(first.length - end).search(/[-_. ]/);
        end = tail < 0 ? 0 : end - tail;
        return names.every(isPart) ? names.map((name) => name.slice(begin, name.length - end)) : names;
    })();
    const shortName = (source) => {
        const place = data.inputs.findIndex((input) => input.name === source);
        return place < 0 ? fileOf(source) : shortNames[place];
    };

    function senderText(sender, among) {
        const parts = [sender.talker, sender.type];
        const isTwice = among.some((other) => other !== sender && other.talker === sender.talker &&
            other.type === sender.type && (other.prefix !== sender.prefix || other.source !== sender.source));
        if (isTwice) {
            parts.push(sender.prefix);
            parts.push(among.some((other) => other.source !== sender.source) ? shortName(sender.source) : "");
        }
        return shown(parts.filter((part) => part !== "").join(" "));
    }

    function seriesNames(panel) {
        const senders = panel.series.map((series) => series.sender);
        const hasSeveral = new Set(panel.series.map((series) => series.quantity)).size > 1;
        return panel.series.map((series) => {
            const others = panel.series.filter((other) => other.quantity === series.quantity &&
                other.reference === series.reference).map((other) => other.sender);
            return [senderText(series.sender, senders.length > 1 ? others : []), hasSeveral ? series.what : "",
                series.reference].filter((part) => part !== "").join(" ");
        });
    }

    // The rows of a plot: a time and a value of each series, null where there is none, NaN in a gap.
    function rowsOf(panel) {
        const points = [];
        panel.series.forEach((series, index) => {
            let last = null;
            series.values.forEach((value, i) => {
                const passesNorth = panel.isDirection && value !== null && last !== null && Math.abs(value - last) > 180;
                if (passesNorth) {
                    points.push([series.at[i], index, NaN]);
                }
                points.push([series.at[i], index, value === null ? NaN : value]);
                last = value;
            });
        });
        points.sort((a, b) => a[0] - b[0]);
        const rows = [];
        let row = null;
        for (const [time, index, value] of points) {
            if (row === null || row[0] !== time || row[index + 1] !== null) {
                row = [time, ...panel.series.map(() => null)];
                rows.push(row);
            }
            row[index + 1] = value;
        }
        return rows;
    }

    // A value with as many decimals as the range of its plot needs.
    function decimalsFor(panel) {
        const values = panel.series.flatMap((series) => series.values.filter((value) => value !== null));
        const range = values.reduce((most, value) => Math.max(most, Math.abs(value)), 0);
        const isWhole = values.every(Number.isInteger);
        return isWhole ? 0 : range >= 1000 ? 1 : range >= 10 ? 2 : 3;
    }

    const unitText = (unit) => ({deg: "°", "deg/s": "°/s", "deg C": "°C"}[unit] || unit);

    // Short enough for its place at the axis.
    function axisText(value) {
        const size = Math.abs(value);
        return size >= 1e6 || (size > 0 && size < 1e-3) ? value.toExponential(1).replace("e+", "e") : String(Number(value.toFixed(3)));
    }

    const drawn = []; // plots, for those who look at them from outside
    function addPlot(panel, isLast) {
        panel.series.forEach((series) => { series.at = timesOf(series.times); });
        const names = seriesNames(panel);
        const rows = rowsOf(panel);
        const decimals = decimalsFor(panel);
        const unit = unitText(panel.unit);
        const key = element("ul", {class: "key"});
        const graph = element("div", {class: isLast ? "graph last" : "graph", tabindex: "0", role: "application",
            "aria-label": `${panel.title}${unit === "" ? "" : ` in ${unit}`} over time: ${names.join(", ")}. Arrow keys move the mark, ` +
                "with shift the period; plus and minus zoom, Home shows the whole time."});
        const head = element("h3", {}, `${panel.title} `, element("span", {class: "unit"}, unit === "" ? "" : `(${unit})`));
        byId("plots").append(element("div", {class: "plot"}, head, key, graph));
        if (panel.undrawn > 0) {
            key.after(element("p", {class: "hint"}, `${plural(panel.undrawn, "further sender")} not drawn.`));
        }
        const longest = panel.series.reduce((most, series) =>
            series.values.reduce((length, value) => value === null ? length : Math.max(length, value.toFixed(decimals).length), most), 0);
        const values = names.map((name, i) => {
            const value = element("span", {class: "value"});
            value.style.minWidth = `${longest + unit.length + 2}ch`; // so that nothing moves when values come
            key.append(element("li", {}, element("span", {class: "sample"}), element("span", {}, name), value));
            return value;
        });

        // The range of the values that are seen, with the axis growing downwards.
        function downwards() {
            let least = Infinity;
            let greatest = -Infinity;
            for (const series of panel.series) {
                series.values.forEach((value, i) => {
                    if (value !== null && series.at[i] >= view[0] && series.at[i] <= view[1]) {
                        least = Math.min(least, value);
                        greatest = Math.max(greatest, value);
                    }
                });
            }
            const margin = (greatest - least) * 0.08 || 1;
            return least > greatest ? null : [greatest + margin, least - margin];
        }
        const isSparse = rows.length <= 40;
        // A direction that often passes north would be a fence of lines.
        const isDotted = panel.series.map((series) => panel.isDirection && series.values.filter((value, i) =>
            i > 0 && value !== null && series.values[i - 1] !== null && Math.abs(value - series.values[i - 1]) > 180).length > 10);
        // A single value has no line.
        const isSingle = panel.series.map((series) => series.values.filter((value) => value !== null).length === 1);
        const styleOf = (i) => isDotted[i] ? {strokeWidth: 0, drawPoints: true, pointSize: 1.2}
            : isSingle[i] ? {drawPoints: true, pointSize: 3} : {strokePattern: patterns[i]};
        const colours = () => ({
            colors: theme().series.slice(0, names.length), gridLineColor: theme().grid, axisLineColor: theme().axis});
        const plot = new Dygraph(graph, rows, {
            labels: ["time", ...names.map((name, i) => `${i}`)],
            series: Object.fromEntries(names.map((name, i) => [`${i}`, styleOf(i)])),
            ...colours(),
            connectSeparatedPoints: true, drawGapEdgePoints: true, drawPoints: isSparse, pointSize: 2,
            strokeWidth: 1.5, highlightCircleSize: 3, legend: "never", labelsUTC: true, animatedZooms: false,
            dateWindow: view, yRangePad: 8, xRangePad: 2, includeZero: false,
            ylabel: unit, yLabelWidth: 16, xlabel: isLast ? "Time (UTC)" : "", xLabelHeight: isLast ? 16 : 0,
            valueRange: panel.growsDownwards ? downwards() : null,
            axes: {
                x: {ticker: (begin, end, pixels) => timeTicks(begin, end, Math.max(2, pixels / 95)), axisLabelWidth: 90},
                y: {axisLabelWidth: 52, pixelsPerLabel: 26,
                    axisLabelFormatter: axisText}},
            highlightCallback: (event, time) => pointAt(time),
            zoomCallback: (begin, end) => setView(begin, end),
            drawCallback: (self, isFirst) => {
                const [begin, end] = self.xAxisRange();
                if (!isFirst && (Math.abs(begin - view[0]) > 1 || Math.abs(end - view[1]) > 1)) {
                    setView(begin, end); // moved by dragging
                }
            },
            // Without those for touching: a finger scrolls the page.
            interactionModel: {
                mousedown: Dygraph.defaultInteractionModel.mousedown,
                willDestroyContextMyself: true,
                dblclick: () => setView(...whole)}});
        const cursor = element("div", {class: "cursor"});
        cursor.hidden = true;
        graph.append(cursor);
        graph.addEventListener("keydown", keyOf);

        function point() {
            values.forEach((value, i) => {
                const series = panel.series[i];
                const place = pointed === null ? -1 : nearest(series.at, pointed);
                const isNear = place >= 0 && series.values[place] !== null &&
                    Math.abs(series.at[place] - pointed) <= Math.max(5 * second, (whole[1] - whole[0]) / 200);
                value.textContent = isNear ? `${series.values[place].toFixed(decimals)} ${unit}` : "";
            });
            const isSeen = pointed !== null && pointed >= view[0] && pointed <= view[1];
            cursor.hidden = !isSeen;
            if (isSeen) {
                const area = plot.getArea();
                cursor.style.left = `${plot.toDomXCoord(pointed)}px`;
                cursor.style.top = `${area.y}px`;
                cursor.style.height = `${area.h}px`;
            }
        }
        viewers.push(() => {
            plot.updateOptions({dateWindow: view, valueRange: panel.growsDownwards ? downwards() : null});
            point();
        });
        pointers.push(point);
        const paint = () => {
            key.querySelectorAll(".sample").forEach((sample, i) => {
                sample.replaceChildren(lineSample(theme().series[i], isDotted[i] ? [2, 4] : patterns[i]));
            });
        };
        paint();
        redraws.push(() => {
            paint();
            // Paper shows finer points than a screen.
            plot.updateOptions({...colours(), pixelRatio: isPrinted() ? 3 : null}, true);
            plot.resize();
            point();
        });
        drawn.push({title: panel.title, plot, panel, names});
    }

    // ---- maps

    // Steps of a graticule, in minutes of arc.
    const arcs = [1e-5, 2e-5, 5e-5, 1e-4, 2e-4, 5e-4, 1e-3, 2e-3, 5e-3, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10,
        20, 30, 60, 120, 300, 600, 900, 1800, 2700, 5400];

    function degreeText(degrees, arc, letters) {
        const minutes = Math.round(Math.abs(degrees) * 60 / arc) * arc;
        const decimals = Math.max(0, -Math.floor(Math.log10(arc) + 1e-9));
        const letter = minutes === 0 ? "" : letters[degrees < 0 ? 1 : 0];
        const whole = Math.floor(minutes / 60 + 1e-9);
        const rest = Math.abs(minutes - whole * 60).toFixed(decimals);
        return `${whole}°${arc >= 60 ? "" : `${rest.padStart(decimals > 0 ? decimals + 3 : 2, "0")}′`}${letter}`;
    }

    const mapEnd = 85.05; // degrees of latitude; the map has no places beyond

    function addGraticule(map) {
        const lines = L.layerGroup().addTo(map);
        function draw() {
            lines.clearLayers();
            const bounds = map.getBounds();
            const size = map.getSize();
            const label = (place, text, kind, anchor, width) =>
                L.marker(place, {interactive: false, keyboard: false,
                    icon: L.divIcon({className: `degree ${kind}`, html: text, iconSize: [width, 14], iconAnchor: anchor})}).addTo(lines);
            const line = (from, to) =>
                L.polyline([from, to], {color: theme().grid, weight: 1, interactive: false, className: "graticule"}).addTo(lines);
            const stepFor = (length, pixels, apart) =>
                arcs.find((arc) => pixels / (length * 60 / arc) >= apart) || arcs[arcs.length - 1];
            const north = Math.min(bounds.getNorth(), 85);
            const south = Math.max(bounds.getSouth(), -85);
            const arcOfLatitude = stepFor(bounds.getNorth() - bounds.getSouth(), size.y, 70);
            const arcOfLongitude = stepFor(bounds.getEast() - bounds.getWest(), size.x, 125);
            const all = (from, to, arc) => {
                const list = [];
                for (let n = Math.ceil(from * 60 / arc); n <= to * 60 / arc && list.length < 100; ++n) {
                    list.push(n * arc / 60);
                }
                return list;
            };
            for (const latitude of all(south, north, arcOfLatitude)) {
                line([latitude, bounds.getWest()], [latitude, bounds.getEast()]);
                const at = map.latLngToContainerPoint([latitude, bounds.getEast()]);
                if (at.y > 24 && at.y < size.y - 8) {
                    label(map.containerPointToLatLng([size.x - 4, at.y]), degreeText(latitude, arcOfLatitude, "NS"), "latitude", [110, 15], 110);
                }
            }
            for (const longitude of all(bounds.getWest(), bounds.getEast(), arcOfLongitude)) {
                line([south, longitude], [north, longitude]);
                const at = map.latLngToContainerPoint([north, longitude]);
                const turned = ((longitude + 540) % 360 + 360) % 360 - 180;
                if (at.x > 100 && at.x < size.x - 60) {
                    label(map.containerPointToLatLng([at.x, 3]), degreeText(turned, arcOfLongitude, "EW"), "longitude", [55, 0], 110);
                }
            }
        }
        map.on("moveend resize", draw);
        redraws.push(() => {
            map.invalidateSize();
            draw();
        });
        draw();
    }

    function newMap(id, name) {
        const map = L.map(id, {attributionControl: false, zoomSnap: 0.25, maxZoom: 30, zoomAnimation: false,
            fadeAnimation: false, inertia: false, scrollWheelZoom: false, worldCopyJump: false});
        const place = byId(id);
        place.setAttribute("role", "application");
        place.setAttribute("aria-label", name);
        // The wheel scrolls the page until somebody works with the map.
        map.on("focus click", () => map.scrollWheelZoom.enable());
        map.on("blur mouseout", () => map.scrollWheelZoom.disable());
        L.control.scale({imperial: false, maxWidth: 160}).addTo(map);
        return map;
    }

    const qualities = {4: "4 RTK fixed", 5: "5 RTK float", 3: "3 precise (PPS)", 2: "2 differential", 1: "1 GPS",
        6: "6 estimated", 7: "7 manual", 8: "8 simulated", 0: "0 no fix", "-1": "quality not sent"};
    const qualityOrder = ["4", "5", "3", "2", "1", "6", "7", "8", "0", "-1"];
    const qualityPatterns = {4: null, 5: [8, 4], 3: [12, 3, 2, 3], 2: [14, 3], 1: null, 6: [2, 5], 7: [2, 5], 8: [2, 5], 0: [4, 8], "-1": null};
    const known = (quality) => qualities[quality] ? quality : -1;

    function addTrack() {
        // A track that passes the date line goes on beyond 180 degrees.
        let turn = 0;
        let before = null;
        const lines = data.track.lines.map((line) => line.map(([time, latitude, longitude, quality]) => {
            if (before !== null && Math.abs(longitude - before) > 180) {
                turn += longitude < before ? 360 : -360;
            }
            before = longitude;
            return {time, latitude, longitude: longitude + turn, quality: known(quality)};
        }));
        const points = lines.flat();
        if (points.length === 0) {
            return;
        }
        const map = newMap("track-map", "Track of the vessel. Arrow keys move the map, plus and minus zoom.");
        const bounds = L.latLngBounds(points.map((point) => [point.latitude, point.longitude]));
        const fit = () => map.fitBounds(bounds, {padding: [26, 26], maxZoom: 24});
        fit();
        addGraticule(map);

        const paths = [];
        for (const line of lines) {
            for (let begin = 0; begin < line.length;) {
                let end = begin;
                while (end < line.length && line[end].quality === line[begin].quality) {
                    ++end;
                }
                const places = line.slice(begin, Math.min(end + 1, line.length)).map((point) => [point.latitude, point.longitude]);
                const quality = line[begin].quality;
                const path = places.length === 1 ? L.circleMarker(places[0], {radius: 3, interactive: false})
                    : L.polyline(places, {weight: 3, interactive: false, smoothFactor: 0.5, dashArray: qualityPatterns[quality] && qualityPatterns[quality].join(" ")});
                path.addTo(map);
                paths.push({path, quality});
                begin = end;
            }
        }
        // Of several inputs the first one need not be the earliest.
        const dated = points.filter((point) => point.time !== null).sort((a, b) => a.time - b.time);
        const inOrder = dated.length > 0 ? dated : points;
        const ends = [inOrder[0], inOrder[inOrder.length - 1]].map(({latitude, longitude}) =>
            L.circleMarker([latitude, longitude], {radius: 6, weight: 2, fillOpacity: 1, interactive: false}).addTo(map));
        const mark = L.circleMarker([0, 0], {radius: 8, weight: 3, fillOpacity: 0.25, interactive: false, className: "mark"});

        const used = qualityOrder.filter((quality) => paths.some((path) => String(path.quality) === quality));
        function paint() {
            const style = getComputedStyle(document.documentElement);
            const ink = style.getPropertyValue("--ink").trim();
            const paper = style.getPropertyValue("--paper").trim();
            paths.forEach(({path, quality}) => path.setStyle({color: theme().quality[quality]}));
            ends[0].setStyle({color: ink, fillColor: paper});
            ends[1].setStyle({color: ink, fillColor: ink});
            mark.setStyle({color: ink, fillColor: ink});
            const dot = (fill) => shape("svg", {width: 14, height: 14, "aria-hidden": "true"},
                shape("circle", {cx: 7, cy: 7, r: 5, stroke: ink, "stroke-width": 2, fill}));
            byId("track-key").replaceChildren(
                ...used.map((quality) => element("li", {}, lineSample(theme().quality[quality], qualityPatterns[quality]), qualities[quality])),
                element("li", {}, dot(paper), "begin"), element("li", {}, dot(ink), "end"));
        }
        paint();
        redraws.push(paint, () => { if (isPrinted()) { fit(); } });

        const hints = [];
        if (data.track.length > 1) {
            hints.push(`Of each ${data.track.length} positions the outermost ones and the one with the worst fix are drawn.`);
        }
        if (lines.length > 1) {
            hints.push(`${lines.length} lines: the track begins anew with each input and after more than 60 s without a position.`);
        }
        const beyond = points.filter((point) => Math.abs(point.latitude) > mapEnd).length;
        if (beyond > 0) {
            hints.push(`${plural(beyond, "drawn position")} beyond ${mapEnd}° of latitude: the map ends there, and they stand at its edge.`);
        }
        byId("track-hint").textContent = hints.join(" ");

        const moments = dated.map((point) => point.time);
        pointers.push(() => {
            const place = pointed === null || dated.length === 0 ? null : dated[nearest(moments, pointed)];
            const isNear = place !== null && Math.abs(place.time - pointed) <= Math.max(minute, (whole[1] - whole[0]) / 200);
            if (isNear) {
                mark.setLatLng([place.latitude, place.longitude]).addTo(map);
            } else {
                mark.remove();
            }
        });
        const seek = (event) => {
            let best = null;
            let least = 40 * 40; // pixels
            for (const point of dated) {
                const at = map.latLngToContainerPoint([point.latitude, point.longitude]);
                const far = (at.x - event.containerPoint.x) ** 2 + (at.y - event.containerPoint.y) ** 2;
                if (far < least) {
                    least = far;
                    best = point;
                }
            }
            if (best !== null) {
                pointAt(best.time);
            }
        };
        map.on("mousemove click", seek);
        report.track = {map, mark, points, paths, ends};
    }

    // ---- satellites

    const systemColours = () => theme().series;
    const letters = {GPS: "G", GLONASS: "R", Galileo: "E", BeiDou: "C", QZSS: "J", NavIC: "I"};
    const markShapes = [
        (x, y, fill) => shape("circle", {cx: x, cy: y, r: 6, fill}),
        (x, y, fill) => shape("rect", {x: x - 5.5, y: y - 5.5, width: 11, height: 11, fill}),
        (x, y, fill) => shape("path", {d: `M${x} ${y - 7}l7 12h-14z`, fill}),
        (x, y, fill) => shape("path", {d: `M${x} ${y - 7}l7 7l-7 7l-7 -7z`, fill}),
        (x, y, fill) => shape("path", {d: `M${x} ${y + 7}l7 -12h-14z`, fill})];

    function addSatellites() {
        if (data.satellites.length === 0) {
            return;
        }
        show("sky");
        const systems = [...new Set(data.satellites.map((satellite) => satellite.system))];
        const nameOf = (satellite) => `${letters[satellite.system] || ""}${two(satellite.prn)}`;
        const markOf = (satellite, x, y) => {
            const number = systems.indexOf(satellite.system);
            return markShapes[number % markShapes.length](x, y, systemColours()[number % systemColours().length]);
        };
        const keyOfSystems = () => {
            const key = element("ul", {class: "key"});
            for (const system of systems) {
                const sample = shape("svg", {width: 16, height: 16, "aria-hidden": "true"}, markOf({system}, 8, 8));
                const count = data.satellites.filter((satellite) => satellite.system === system).length;
                key.append(element("li", {}, sample, `${shown(system)} (${count})`));
            }
            return key;
        };

        const placed = data.satellites.filter((satellite) => satellite.way.length > 0);
        function drawSky() {
            const radius = 150;
            const size = 2 * radius + 44;
            const centre = size / 2;
            const at = (azimuth, elevation) => {
                const far = radius * (90 - elevation) / 90;
                const angle = azimuth * Math.PI / 180;
                return [centre + far * Math.sin(angle), centre - far * Math.cos(angle)];
            };
            const svg = shape("svg", {viewBox: `0 0 ${size} ${size}`, width: size, height: size, role: "img",
                "aria-label": `Sky plot of ${plural(placed.length, "satellite")}`});
            svg.append(shape("circle", {cx: centre, cy: centre, r: radius, class: "ground"}));
            for (const elevation of [0, 30, 60]) {
                svg.append(shape("circle", {cx: centre, cy: centre, r: radius * (90 - elevation) / 90, class: elevation === 0 ? "frame" : "grid"}));
                svg.append(shape("text", {x: centre + 3, y: centre - radius * (90 - elevation) / 90 + 13, class: "faint"}, `${elevation}°`));
            }
            svg.append(shape("line", {x1: centre - radius, x2: centre + radius, y1: centre, y2: centre, class: "grid"}),
                shape("line", {y1: centre - radius, y2: centre + radius, x1: centre, x2: centre, class: "grid"}));
            [["N", centre, 14], ["E", size - 11, centre + 4], ["S", centre, size - 6], ["W", 11, centre + 4]].forEach(([text, x, y]) =>
                svg.append(shape("text", {x, y, "text-anchor": "middle"}, text)));
            for (const satellite of placed) {
                const number = systems.indexOf(satellite.system);
                const pieces = [];
                let before = null;
                for (const [, azimuth, elevation] of satellite.way) {
                    const place = at(azimuth, elevation);
                    const jumps = before !== null && Math.hypot(place[0] - before[0], place[1] - before[1]) > radius / 3;
                    pieces.push(`${before === null || jumps ? "M" : "L"}${place[0].toFixed(1)} ${place[1].toFixed(1)}`);
                    before = place;
                }
                svg.append(shape("path", {d: pieces.join(""), fill: "none", stroke: systemColours()[number % 8], "stroke-width": 1.5, opacity: 0.7}));
            }
            for (const satellite of placed) {
                const [, azimuth, elevation] = satellite.way[satellite.way.length - 1];
                const [x, y] = at(azimuth, elevation);
                const mark = markOf(satellite, x, y);
                mark.setAttribute("class", "satellite");
                mark.setAttribute("data-name", shown(nameOf(satellite)));
                mark.append(shape("title", {}, `${shown(satellite.system)} ${satellite.prn}: azimuth ${azimuth}°, elevation ${elevation}°`));
                svg.append(mark, shape("text", {x: x + 8, y: y + 4}, shown(nameOf(satellite))));
            }
            byId("sky-plot").replaceChildren(element("h3", {}, "Sky plot"), keyOfSystems(), svg,
                element("figcaption", {}, "All receivers together. Lines: ways over the sky. Marks: last places. Centre: zenith; rings: elevation."));
        }

        const heard = data.satellites.filter((satellite) => satellite.signal);
        function drawSignals() {
            if (heard.length === 0) {
                return;
            }
            const height = 230;
            const left = 34;
            const foot = 46;
            const wide = 17;
            const width = left + heard.length * wide + (systems.length - 1) * 12 + 8;
            const most = Math.max(60, ...heard.map((satellite) => satellite.signal.greatest));
            const y = (value) => height - foot - (height - foot - 12) * value / most;
            const svg = shape("svg", {viewBox: `0 0 ${width} ${height}`, width, height, role: "img",
                "aria-label": `Signal strengths of ${plural(heard.length, "satellite")} in dB-Hz`});
            for (let value = 0; value <= most; value += 10) {
                svg.append(shape("line", {x1: left, x2: width, y1: y(value), y2: y(value), class: "grid"}),
                    shape("text", {x: left - 6, y: y(value) + 4, "text-anchor": "end", class: "faint"}, String(value)));
            }
            let x = left + 4;
            systems.forEach((system, number) => {
                for (const satellite of heard.filter((one) => one.system === system)) {
                    const {least, mean, greatest, count} = satellite.signal;
                    const colour = systemColours()[number % 8];
                    const bar = shape("g", {class: "signal", "data-name": shown(nameOf(satellite))},
                        shape("rect", {x: x + 1, width: wide - 5, y: y(greatest), height: Math.max(2, y(least) - y(greatest)), fill: colour, opacity: 0.45}),
                        shape("rect", {x, width: wide - 3, y: y(mean) - 1.5, height: 3, fill: colour}),
                        shape("text", {transform: `translate(${x + wide / 2 + 2} ${height - foot + 6}) rotate(-90)`, "text-anchor": "end"}, shown(nameOf(satellite))),
                        shape("title", {}, `${shown(system)} ${satellite.prn}: ${least} to ${greatest} dB-Hz, mean ${mean.toFixed(1)}, ${plural(count, "value")}`));
                    svg.append(bar);
                    x += wide;
                }
                x += 12;
            });
            byId("signals").replaceChildren(element("h3", {}, "Signal strength (dB-Hz)"), keyOfSystems(), 
                element("div", {class: "table", tabindex: "0", role: "region", "aria-label": "Signal strengths"}, svg),
                element("figcaption", {}, "Pale: from the weakest to the strongest; line: mean. All signals of a satellite together."));
        }
        drawSky();
        drawSignals();
        redraws.push(drawSky, drawSignals);
    }

    // ---- beacons

    function niceStep(range) {
        const power = 10 ** Math.floor(Math.log10(range));
        return [1, 2, 5, 10].map((n) => n * power).find((step) => range / step <= 2.5);
    }

    function addBeacons() {
        const metres = " m";
        const frames = [
            {frame: "bow", title: "From the bow (m)", up: "ahead", right: "starboard", unit: metres, isOfVessel: true},
            {frame: "north", title: "North up (m)", up: "north", right: "east", unit: metres, isOfVessel: true},
            {frame: "localGrid", title: "Local grid (m)", up: "north", right: "east", unit: metres},
            {frame: "utm", title: "UTM (m)", up: "northing", right: "easting", unit: metres},
            {frame: "xy", title: "X and Y as sent", up: "Y", right: "X", unit: ""}];
        const all = data.beacons.places;
        if (all.length === 0) {
            return;
        }
        show("beacons");
        const names = [...new Set(all.map((place) => place[0]))];
        const draw = () => {
            const figures = [];
            for (const {frame, title, up, right, unit, isOfVessel} of frames) {
                const places = all.filter((place) => place[1] === frame);
                if (places.length === 0) {
                    continue;
                }
                // The vessel stands in the middle; without it, what there is.
                const middle = [3, 4].map((i) => {
                    const [least, most] = places.reduce(([a, b], place) => [Math.min(a, place[i]), Math.max(b, place[i])], [Infinity, -Infinity]);
                    return isOfVessel ? 0 : (least + most) / 2;
                });
                const half = 160;
                const size = 2 * half + 40;
                const centre = size / 2;
                const farthest = Math.max(1, ...places.map((place) => Math.max(Math.abs(place[3] - middle[0]), Math.abs(place[4] - middle[1])))) * 1.1;
                const step = niceStep(farthest);
                const scale = half / farthest;
                const svg = shape("svg", {viewBox: `0 0 ${size} ${size}`, width: size, height: size, role: "img",
                    "aria-label": `Acoustic beacons: ${title}`});
                svg.append(shape("rect", {x: 20, y: 20, width: 2 * half, height: 2 * half, class: "ground"}));
                if (isOfVessel) {
                    for (let n = 1; n * step <= farthest; ++n) {
                        svg.append(shape("circle", {cx: centre, cy: centre, r: n * step * scale, class: "grid"}),
                            shape("text", {x: centre + 3, y: centre - n * step * scale - 3, class: "faint"}, `${Number((n * step).toPrecision(6))}${unit}`));
                    }
                    svg.append(shape("line", {x1: 20, x2: size - 20, y1: centre, y2: centre, class: "grid"}),
                        shape("line", {y1: 20, y2: size - 20, x1: centre, x2: centre, class: "grid"}),
                        frame === "north" ? shape("circle", {cx: centre, cy: centre, r: 4, class: "strong"})
                            : shape("path", {d: `M${centre} ${centre - 12}l5 8v14h-10v-14z`, class: "weak"}));
                } else {
                    const lines = (i) => {
                        const all = [];
                        for (let n = Math.ceil((middle[i] - farthest) / step); n * step <= middle[i] + farthest; ++n) {
                            all.push([(n * step - middle[i]) * scale, String(Number((n * step).toPrecision(12)))]);
                        }
                        return all;
                    };
                    for (const [far, text] of lines(0)) {
                        svg.append(shape("line", {y1: 20, y2: size - 20, x1: centre + far, x2: centre + far, class: "grid"}),
                            shape("text", {x: centre + far, y: size - 8, "text-anchor": "middle", class: "faint"}, text));
                    }
                    for (const [far, text] of lines(1)) {
                        svg.append(shape("line", {x1: 20, x2: size - 20, y1: centre - far, y2: centre - far, class: "grid"}),
                            shape("text", {x: 23, y: centre - far - 3, class: "faint"}, text));
                    }
                }
                svg.append(shape("text", {x: centre, y: 14, "text-anchor": "middle"}, up),
                    shape("text", {x: size - 4, y: centre - 4, "text-anchor": "end"}, right));
                for (const [name, , time, x, y] of places) {
                    const number = names.indexOf(name);
                    const mark = markShapes[number % markShapes.length](centre + (x - middle[0]) * scale, centre - (y - middle[1]) * scale, theme().series[number % 8]);
                    mark.setAttribute("class", "beacon");
                    mark.setAttribute("opacity", "0.6");
                    mark.append(shape("title", {}, `${shown(name)}: ${x.toFixed(2)}${unit} ${right}, ${y.toFixed(2)}${unit} ${up}${time === null ? "" : `, ${instantText(time)}`}`));
                    svg.append(mark);
                }
                const key = element("ul", {class: "key"});
                for (const name of new Set(places.map((place) => place[0]))) {
                    const number = names.indexOf(name);
                    key.append(element("li", {}, shape("svg", {width: 16, height: 16, "aria-hidden": "true"},
                        markShapes[number % markShapes.length](8, 8, theme().series[number % 8])), shown(name) || "without a name"));
                }
                figures.push(element("figure", {}, element("h3", {}, title), key, svg));
            }
            const hints = [];
            if (data.beacons.everyNth > 1) {
                hints.push(`One of ${data.beacons.everyNth} places is drawn.`);
            }
            if (data.beacons.others > 0) {
                hints.push(`${plural(data.beacons.others, "place")} without coordinates, or in degrees while the place of the vessel is not known, not drawn.`);
            }
            if (hints.length > 0) {
                figures.push(element("p", {class: "hint"}, hints.join(" ")));
            }
            byId("beacon-plots").replaceChildren(...figures);
        };
        draw();
        redraws.push(draw);
    }

    // ---- rates and gaps

    // The pieces of a strip: where records came without a gap, and at what rate.
    function piecesOf({runs, gaps, usualStep}) {
        const chunks = []; // of at least eight records, so that a rate can be told
        runs.forEach(([begin, end, count], i) => {
            const next = i + 1 < runs.length ? runs[i + 1][0] : end + usualStep;
            const last = chunks[chunks.length - 1];
            if (last && !(last.count >= 8 && last.end - last.begin >= 5 * usualStep)) {
                last.count += count;
                last.end = next;
            } else {
                chunks.push({begin, count, end: next});
            }
        });
        // The last record before a gap stands for one usual step.
        const empty = gaps.map(([begin, end]) => [Math.min(begin + usualStep, end), end]);
        const emptyIn = (chunk) => empty.reduce((sum, [begin, end]) =>
            sum + Math.max(0, Math.min(end, chunk.end) - Math.max(begin, chunk.begin)), 0);
        const rateOf = (chunk) => chunk.count / Math.max(1, chunk.end - chunk.begin - emptyIn(chunk));
        const rates = chunks.filter((chunk) => chunk.count >= 8).map(rateOf).sort((a, b) => a - b);
        const typical = rates.length > 0 ? rates[rates.length >> 1] : 0;
        const pieces = [];
        for (const chunk of chunks) {
            const share = typical > 0 && chunk.count >= 8 ? rateOf(chunk) / typical : 1;
            const shade = share >= 0.75 ? "strong" : share >= 0.25 ? "middle" : "weak";
            let from = chunk.begin;
            for (const [begin, end] of [...empty, [chunk.end, Infinity]]) {
                const to = Math.min(begin, chunk.end);
                const last = pieces[pieces.length - 1];
                if (to > from && last && last.shade === shade && from <= last.end + 1) {
                    last.end = to;
                } else if (to > from || (from === chunk.begin && begin >= chunk.end)) {
                    pieces.push({begin: from, end: to, shade});
                }
                from = Math.max(from, end);
            }
        }
        return pieces;
    }

    function addPresence() {
        const strips = data.presence.strips.filter((strip) => strip.runs.length > 0);
        if (strips.length === 0) {
            return;
        }
        show("presence");
        const senders = strips.map((strip) => strip.sender);
        for (const strip of strips) {
            strip.name = senderText(strip.sender, senders);
            strip.pieces = piecesOf(strip);
        }
        const rateText = (strip) => strip.rate === "" ? "" : `${strip.rate}/s`;
        const undrawn = data.presence.undrawn;
        byId("presence-hint").textContent = "When the records of each sender came. Dark: at its usual rate; paler: below three quarters " +
            `and below a quarter of it; empty: none.${undrawn > 0 ? ` ${plural(undrawn, "further sender")} with fewer records not drawn.` : ""}`;
        function draw() {
            const width = Math.max(280, byId("strips").clientWidth);
            const isNarrow = width < 600;
            const left = isNarrow ? 0 : 250;
            const high = isNarrow ? 34 : 20;
            const top = isNarrow ? 15 : 3;
            const foot = 34;
            const height = strips.length * high + foot;
            const x = (time) => left + (width - left - 2) * (time - view[0]) / (view[1] - view[0]);
            const svg = shape("svg", {width, height, viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": `Records of ${plural(strips.length, "sender")} over time`});
            for (const {v, label} of timeTicks(view[0], view[1], Math.max(2, (width - left) / 95))) {
                svg.append(shape("line", {x1: x(v), x2: x(v), y1: 0, y2: height - foot, class: "grid"}));
                if (x(v) > left + 30 && x(v) < width - 32) {
                    svg.append(shape("text", {x: x(v), y: height - foot + 14, "text-anchor": "middle", class: "faint"}, label));
                }
            }
            svg.append(shape("text", {x: left + (width - left) / 2, y: height - 4, "text-anchor": "middle", class: "faint"}, "Time (UTC)"));
            strips.forEach((strip, row) => {
                const y = row * high;
                const name = strip.name.length > 30 ? `${strip.name.slice(0, 29)}…` : strip.name;
                svg.append(shape("rect", {x: left, y: y + top, width: width - left, height: 14, class: "ground"}),
                    shape("text", {x: 0, y: y + (isNarrow ? 12 : 15)}, name),
                    shape("text", {x: isNarrow ? width : left - 10, y: y + (isNarrow ? 12 : 15), "text-anchor": "end", class: "faint"}, rateText(strip)));
                const group = shape("g", {class: "strip", "data-name": strip.name});
                group.append(shape("title", {}, `${strip.name}: ${plural(strip.count, "record")}${strip.longestGap === "" ? "" : `, longest gap ${strip.longestGap}`}`));
                for (const {begin, end, shade} of strip.pieces) {
                    const from = Math.max(x(begin), left);
                    const to = Math.min(Math.max(x(end), x(begin) + 1), width - 2);
                    if (to > left && from < width - 2) {
                        group.append(shape("rect", {x: from.toFixed(2), width: Math.max(1, to - from).toFixed(2), y: y + top, height: 14, class: shade}));
                    }
                }
                svg.append(group);
            });
            const cursor = shape("line", {y1: 0, y2: height - foot, class: "cursorLine", visibility: "hidden"});
            svg.append(cursor);
            byId("strips").replaceChildren(svg);
            point = () => {
                const isSeen = pointed !== null && pointed >= view[0] && pointed <= view[1];
                cursor.setAttribute("visibility", isSeen ? "visible" : "hidden");
                if (isSeen) {
                    cursor.setAttribute("x1", x(pointed));
                    cursor.setAttribute("x2", x(pointed));
                }
            };
            svg.addEventListener("mousemove", (event) => {
                const at = event.clientX - svg.getBoundingClientRect().left;
                if (at >= left) {
                    pointAt(view[0] + (at - left) / (width - left - 2) * (view[1] - view[0]));
                }
            });
            point();
        }
        let point = () => {};
        draw();
        viewers.push(draw);
        pointers.push(() => point());
        redraws.push(draw);
    }

    // ---- tables

    // Columns: {head, isNumber, kind}; rows: arrays of texts, numbers or elements with `dataset.value`.
    function table(title, columns, rows, undrawn = 0) {
        const used = columns.map((column, i) => rows.some((row) => row[i] !== "" && row[i] !== null));
        const body = element("tbody");
        const lines = rows.map((row) => {
            const line = element("tr");
            row.forEach((cell, i) => {
                if (used[i]) {
                    const content = cell === null ? "" : cell instanceof Node ? cell : element("bdi", {}, shown(cell));
                    line.append(element("td", {class: columns[i].isNumber ? "number" : columns[i].kind || "text"}, content));
                }
            });
            return {row, line};
        });
        body.append(...lines.map(({line}) => line));
        const head = element("tr");
        columns.forEach((column, i) => {
            if (!used[i]) {
                return;
            }
            const button = element("button", {type: "button"}, column.head);
            const cell = element("th", {scope: "col", class: column.isNumber ? "number" : "text"}, button);
            button.addEventListener("click", () => {
                const isDown = cell.getAttribute("aria-sort") === "ascending";
                head.querySelectorAll("th").forEach((other) => other.removeAttribute("aria-sort"));
                cell.setAttribute("aria-sort", isDown ? "descending" : "ascending");
                const value = (cells) => cells[i] instanceof Node ? cells[i].textContent : cells[i];
                const order = (a, b) => {
                    const [x, y] = [value(a.row), value(b.row)];
                    const isEmpty = (v) => v === "" || v === null;
                    if (isEmpty(x) || isEmpty(y)) {
                        return isEmpty(x) - isEmpty(y); // empty cells last
                    }
                    const [m, n] = [parseFloat(String(x).replace("<", "")), parseFloat(String(y).replace("<", ""))];
                    const byNumber = column.isNumber && !Number.isNaN(m) && !Number.isNaN(n);
                    return (byNumber ? m - n : String(x).localeCompare(String(y), "en", {numeric: true})) * (isDown ? -1 : 1);
                };
                body.append(...[...lines].sort(order).map(({line}) => line));
            });
            head.append(cell);
        });
        const whole = element("table", {}, element("caption", {}, title), element("thead", {}, head), body);
        const box = element("div", {class: rows.length > 20 ? "table long" : "table", tabindex: "0", role: "region", "aria-label": title}, whole);
        const all = element("div", {}, box);
        if (undrawn > 0) {
            all.append(element("p", {class: "hint"}, `${plural(undrawn, "further row")} not shown.`));
        }
        return {all, lines};
    }

    function addFindings() {
        const {faults, notes, groups, undrawn} = data.findings;
        show("findings");
        byId("findings-hint").textContent = `${plural(faults, "fault")}, ${plural(notes, "note")}. ` +
            (groups.length > 0 ? "Findings of the same kind are one row; faults come first."
                : data.records === 0 ? "There are no records." : "Nothing is wrong, and nothing looks odd.");
        if (groups.length === 0) {
            return;
        }
        const isOneInput = data.inputCount < 2;
        const placeText = (place) => `${isOneInput ? "" : `${fileOf(place.source)} `}${place.line}`;
        const severity = (group) => {
            const isFault = group.severity === "fault";
            return element("span", {class: isFault ? "fault" : "note"}, `${isFault ? "●" : "○"} ${group.severity}`);
        };
        const order = [...groups].sort((a, b) => (a.severity > b.severity) - (a.severity < b.severity));
        byId("finding-table").replaceChildren(table("Findings of kalo check", [
            {head: "severity", kind: "moment"}, {head: "what"}, {head: "times", isNumber: true},
            {head: isOneInput ? "first line" : "first at", isNumber: isOneInput}, {head: isOneInput ? "last line" : "last at", isNumber: isOneInput},
            {head: "record of the first"}, {head: "kind", kind: "moment"}],
        order.map((group) => [severity(group), group.message, group.count, placeText(group.first), placeText(group.last),
            group.raw === "" ? "" : element("code", {}, element("bdi", {}, shown(group.raw))), group.kind]), undrawn).all);
    }

    function addSummary() {
        if (data.tables.length === 0) {
            return;
        }
        show("summary");
        for (const one of data.tables) {
            byId("summary-tables").append(table(one.title, one.columns.map((column) =>
                ({...column, kind: ["first", "last", "value", "type"].includes(column.head) ? "moment" : "text"})), one.rows, one.undrawn).all);
        }
    }

    function addStreams() {
        const {columns, rows, undrawn} = data.streams;
        const turned = (longitude) => ((longitude + 540) % 360 + 360) % 360 - 180;
        if (rows.length === 0) {
            return;
        }
        show("streams");
        const heads = {formatDetails: "details", carrierType: "carrier", navSystem: "systems", authType: "authentication"};
        const list = table("Streams", [...columns.map((name) => ({head: heads[name] || name, kind: name === "formatDetails" ? "text" : "moment"})),
            {head: "bit/s", isNumber: true}, {head: "latitude (°)", isNumber: true}, {head: "longitude (°)", isNumber: true}], rows, undrawn);
        byId("stream-table").replaceChildren(list.all);
        const latitude = columns.length + 1;
        const placed = list.lines.filter(({row}) => row[latitude] !== null && row[latitude + 1] !== null &&
            Math.abs(row[latitude]) <= 85 && Math.abs(row[latitude + 1]) <= 360);
        const beyond = rows.filter((row) => row[latitude] !== null && Math.abs(row[latitude]) > 85).length;
        if (placed.length === 0) {
            byId("stream-map").remove();
            return;
        }
        // The map begins behind the widest space without a stream.
        const longitudes = placed.map(({row}) => turned(row[latitude + 1])).sort((a, b) => a - b);
        const spaces = longitudes.map((longitude, i) => i === 0 ? longitude + 360 - longitudes[longitudes.length - 1] : longitude - longitudes[i - 1]);
        const first = longitudes[spaces.indexOf(Math.max(...spaces))];
        const east = (longitude) => turned(longitude) + (turned(longitude) < first ? 360 : 0);
        const map = newMap("stream-map", "Map of the streams. Arrow keys move the map, plus and minus zoom.");
        map.fitBounds(L.latLngBounds(placed.map(({row}) => [row[latitude], east(row[latitude + 1])])), {padding: [30, 30], maxZoom: 12});
        addGraticule(map);
        const marks = placed.map(({row, line}) => {
            const mark = L.circleMarker([row[latitude], east(row[latitude + 1])], {radius: 6, weight: 2, fillOpacity: 0.5, className: "stream"});
            const name = shown(row[0]);
            mark.bindTooltip(element("bdi", {}, `${name} ${shown(row[1])}`));
            const set = (isOn) => {
                line.classList.toggle("marked", isOn);
                mark.setRadius(isOn ? 10 : 6);
                if (isOn) {
                    mark.bringToFront();
                }
            };
            mark.on("mouseover", () => set(true)).on("mouseout", () => set(false));
            line.addEventListener("mouseenter", () => set(true));
            line.addEventListener("mouseleave", () => set(false));
            return mark.addTo(map);
        });
        const paint = () => marks.forEach((mark) => mark.setStyle({color: theme().series[0], fillColor: theme().series[0]}));
        paint();
        redraws.push(paint);
        byId("stream-hint").textContent = `${plural(placed.length, "stream")} of ${rows.length} on the map${beyond > 0 ? `, ${beyond} beyond 85° of latitude` : ""}. There is no coastline: the page loads nothing.`;
        report.streams = {map, marks};
    }

    // ---- head

    function addHead() {
        const names = data.inputs.map((input) => input.name === "-" ? "standard input" : shown(fileOf(input.name)));
        const title = names.length === 0 ? "Report" : names.length <= 3 ? `Report of ${names.join(", ")}`
            : `Report of ${names[0]} and ${data.inputCount - 1} more`;
        byId("title").replaceChildren(element("bdi", {}, title));
        document.title = title;
        const {faults, notes} = data.findings;
        const link = (kind, text) => element("a", {href: "#findings", class: `pill ${kind}`}, text);
        if (data.records === 0) {
            byId("health").append(element("span", {class: "pill note"}, data.isPart ? "no records in this period" : "no records"));
        }
        byId("health").append(...(data.records + faults + notes === 0 ? [] : faults + notes === 0 ? [link("good", "✓ no faults, no notes")]
            : [link(faults > 0 ? "fault" : "good", `${faults > 0 ? "●" : "✓"} ${faults === 0 ? "no faults" : plural(faults, "fault")}`),
                link(notes > 0 ? "note" : "good", `${notes > 0 ? "○" : "✓"} ${notes === 0 ? "no notes" : plural(notes, "note")}`)]));
        const fact = (head, ...content) => byId("facts").append(element("dt", {}, head), element("dd", {}, ...content));
        for (const {head, text} of data.lines) {
            if (head === "input" && data.inputs.length <= 12) {
                fact("input", ...data.inputs.map((input) => element("div", {}, element("bdi", {}, shown(input.name)), `, ${plural(input.bytes, "byte")}`)));
            } else {
                fact(head, shown(text));
            }
        }
        if (data.undated > 0) {
            fact("hint", `${plural(data.undated, "record has a time", "records have a time")} but no date and cannot be drawn over time: give --date YYYY-MM-DD.`);
        }
        fact("made by", `kalo ${data.version}`);
        fact("command", element("code", {}, element("bdi", {}, shown(data.command))));
        byId("made").textContent = `Made by kalo ${data.version}. All times are UTC. The page holds all of its data and loads nothing.`;
    }

    const report = {data, drawn, looks: {themes, patterns, qualityPatterns}, view: () => view, whole: () => whole, pointed: () => pointed};
    window.kaloReport = report; // for tests and for the console

    addHead();
    if (data.panels.length > 0 || data.track.lines.length > 0) {
        show("voyage");
        if (data.track.lines.length === 0) {
            byId("voyage-title").textContent = "Measurements";
        } else if (data.panels.length === 0) {
            byId("voyage-title").textContent = "Track";
        }
        const hasBoth = data.panels.length > 0 && data.track.lines.length > 0;
        // Before the plots measure their width.
        byId("columns").classList.toggle("hasTrack", hasBoth);
        byId("track").hidden = data.track.lines.length === 0;
        data.panels.forEach((panel, i) => addPlot(panel, i === data.panels.length - 1));
        addTrack();
    }
    const hints = [];
    const lengths = data.panels.flatMap((panel) => panel.series.map((series) => series.length)).filter((length) => length > 1);
    if (data.panels.length > 0) {
        hints.push("Drag over a plot to zoom all; double-click shows the whole time; drag with shift moves.");
    }
    if (ofMost !== null) {
        hints.push(`Shown first is the time that holds nearly all records. ${plural(ofMost.others, "record has a date", "records have dates")} far outside it.`);
    } else if (isTrackShort) {
        hints.push(`Shown first is the time of the track; the recordings last ${durationText(whole[1] - whole[0])}.`);
    }
    if (lengths.length > 0) {
        hints.push("Long series are thinned: of each interval the least and the greatest value are drawn. An interval has up to " +
            `${Math.max(...lengths).toLocaleString("en")} values. kalo report with --since and --until draws less time in more detail, with --max-points more points.`);
    }
    if (data.unkeptSeries > 0) {
        hints.push(`${plural(data.unkeptSeries, "series", "series")} beyond the limit not drawn.`);
    }
    if (data.undated > 0) {
        hints.push(`${plural(data.undated, "record")} without a date cannot be drawn over time: give --date YYYY-MM-DD.`);
    }
    byId("voyage-hint").textContent = hints.join(" ");
    addSatellites();
    addBeacons();
    if (whole) {
        addPresence();
        byId("zoom-in").addEventListener("click", () => zoom(0.5));
        byId("zoom-out").addEventListener("click", () => zoom(2));
        byId("earlier").addEventListener("click", () => pan(-0.5));
        byId("later").addEventListener("click", () => pan(0.5));
        byId("of-track").hidden = !isTrackShort;
        byId("of-track").addEventListener("click", () => setView(...ofTrack));
        byId("whole").addEventListener("click", () => setView(...whole));
        byId("bar").addEventListener("keydown", (event) => { if (event.key === "Escape") { pointAt(null); } });
        drawClock();
    } else {
        byId("bar").remove();
    }
    addStreams();
    addFindings();
    addSummary();

    const redraw = () => redraws.forEach((one) => one());
    isDark.addEventListener("change", redraw);
    let width = window.innerWidth;
    window.addEventListener("resize", () => {
        if (window.innerWidth !== width) {
            width = window.innerWidth;
            redraw();
        }
    });
    // A canvas that was just drawn prints empty: a picture of it stands in for it.
    const setPrinted = (isOn) => {
        document.documentElement.classList.toggle("printing", isOn);
        redraw();
        document.querySelectorAll(".printed").forEach((picture) => picture.remove());
        if (isOn) {
            document.querySelectorAll(".graph canvas").forEach((canvas) => {
                const picture = element("img", {class: "printed", alt: "", src: canvas.toDataURL()});
                for (const side of ["position", "left", "top", "width", "height"]) {
                    picture.style[side] = canvas.style[side];
                }
                canvas.after(picture);
            });
        }
    };
    window.addEventListener("beforeprint", () => setPrinted(true));
    window.addEventListener("afterprint", () => setPrinted(false));
    report.drawnAfter = performance.now();
})();
