// The report of kalo in a real browser: whether it draws what the recording says, answers to mouse and
// keys, keeps texts of the input inert, and loads nothing.
// usage: node reportTest.mjs KALO VOYAGE RECORDING FOLDER [--picture FILE]
//   KALO       the tool; VOYAGE: the generator of logs; RECORDING: the shipped one
//   FOLDER     for the pages and pictures, which stay there to be looked at
import assert from "node:assert/strict";
import {execFileSync} from "node:child_process";
import fs from "node:fs";
import {createRequire} from "node:module";
import path from "node:path";
import {chromium} from "playwright-core";

const [kalo, voyage, recording, folder, , picture] = process.argv.slice(2);
const require = createRequire(import.meta.url);
const axe = fs.readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");
const run = (tool, args, input) =>
    execFileSync(tool, args, {input, maxBuffer: 1 << 30, stdio: ["pipe", "pipe", "ignore"], encoding: "utf8"});
const decoded = (log, type) =>
    run(kalo, ["decode", "--quiet", "--epoch", "--type", type, "--only-valid", log]).split("\n").filter(Boolean).map((line) => JSON.parse(line));

function makeReport(name, args) {
    const file = path.join(folder, `${name}.html`);
    fs.writeFileSync(file, run(kalo, ["report", ...args]));
    return file;
}

const browser = await chromium.launch({
    executablePath: process.env.CHROMIUM || "/usr/bin/chromium", args: ["--no-sandbox", "--force-color-profile=srgb"]});
const faults = [];

// A page, and what it complains of or asks for.
async function open(file, {width = 1400, height = 900, dark = false} = {}) {
    const context = await browser.newContext({viewport: {width, height}, colorScheme: dark ? "dark" : "light"});
    const page = await context.newPage();
    page.complaints = [];
    page.on("console", (message) => page.complaints.push(`${message.type()}: ${message.text()}`));
    page.on("pageerror", (error) => page.complaints.push(`error: ${error.message}`));
    page.on("request", (request) => {
        if (request.url() !== `file://${file}` && !request.url().startsWith("data:")) {
            page.complaints.push(`request: ${request.url()}`);
        }
    });
    await page.goto(`file://${file}`);
    return page;
}
async function close(page) {
    const complaints = page.complaints;
    await page.context().close();
    assert.deepEqual(complaints, [], "what the page complained of or asked for");
}

async function test(name, body) {
    const begin = Date.now();
    try {
        await body();
        console.log(`passed  ${name} (${((Date.now() - begin) / 1000).toFixed(1)} s)`);
    } catch (error) {
        faults.push(name);
        console.log(`FAILED  ${name}\n${error.stack}`);
    }
}

const sentence = (body) => {
    const sum = [...Buffer.from(body, "utf8")].reduce((x, byte) => x ^ byte, 0);
    return `$${body}*${sum.toString(16).toUpperCase().padStart(2, "0")}`;
};

const report = makeReport("voyage", [recording]);

// ---- what is drawn is what the recording says

// Which panel shows which value of which type.
const shown = [
    ["Speed", "VTG", "speedOverGround", "speedOverGround"],
    ["Course and heading", "HDT", "heading", "heading"],
    ["Rate of turn", "ROT", "rateOfTurn", "rateOfTurn"],
    ["Roll", "TSS1", "roll", "roll"],
    ["Pitch", "TSS1", "pitch", "pitch"],
    ["Heave", "TSS1", "heave", "heave"],
    ["Depth", "DBT", "depth", "depth"],
    ["Wind speed", "MWD", "windSpeed", "windSpeed"],
    ["Wind direction", "MWD", "windDirection", "trueWindDirection"],
    ["Satellites used", "PZWBGGA", "satCount", "satCount"],
    ["Dilution of precision", "GSA", "hdop", "hdop"],
    ["Standard deviation of the position", "GST", "altitudeError", "altitudeError"],
    ["Age of corrections", "PZWBGGA", "diffAge", "diffAge"]];

await test("each plot has the values of the recording", async () => {
    const page = await open(report);
    for (const [title, type, quantity, key] of shown) {
        const expected = decoded(recording, type).filter((record) => key in record).map((record) => record[key]);
        const series = await page.evaluate(([title, type, quantity]) => {
            const {panel} = kaloReport.drawn.find((one) => one.title === title);
            const found = panel.series.filter((one) => one.sender.type === type && one.quantity === quantity && one.sender.prefix === "");
            return found.map(({values, count, length}) => ({values: values.filter((value) => value !== null), count, length}));
        }, [title, type, quantity]);
        assert.equal(series.length, 1, `${title}: one series of ${type}`);
        assert.equal(series[0].length, 1, "nothing is thinned");
        const sorted = (list) => list.map((value) => value.toFixed(6)).sort();
        assert.deepEqual(sorted(series[0].values), sorted(expected), `${title} of ${type}`);
    }
    await close(page);
});

await test("the line of a plot passes where its values are", async () => {
    const page = await open(report);
    const misses = await page.evaluate(() => {
        const misses = [];
        for (const {title, plot, panel, names} of kaloReport.drawn) {
            const drawn = plot.hidden_;
            const copy = new OffscreenCanvas(drawn.width, drawn.height);
            const context = copy.getContext("2d", {willReadFrequently: true});
            context.drawImage(drawn, 0, 0);
            const ratio = drawn.width / plot.width_;
            panel.series.forEach((series, number) => {
                // the least and the greatest value
                for (const wanted of [Math.min(...series.values.filter((v) => v !== null)), Math.max(...series.values)]) {
                    const place = series.values.indexOf(wanted);
                    // Another line with the same value may lie over it.
                    const colours = panel.series.map((other, i) => [other, plot.getColors()[i]])
                        .filter(([other]) => other.values.includes(wanted))
                        .map(([, colour]) => colour.match(/[0-9a-f]{2}/gi).map((hex) => parseInt(hex, 16)));
                    const x = plot.toDomXCoord(series.at[place]);
                    const y = plot.toDomYCoord(wanted);
                    const size = 9;
                    const {data} = context.getImageData((x - size / 2) * ratio, (y - size / 2) * ratio, size * ratio, size * ratio);
                    let isThere = false;
                    for (let i = 0; i < data.length; i += 4) {
                        const isNear = colours.some((colour) => [0, 1, 2].every((c) => Math.abs(data[i + c] - colour[c]) < 40));
                        isThere = isThere || (isNear && data[i + 3] > 100);
                    }
                    const isAlone = panel.series.length <= 2; // else one with another value may
                    if (!isThere && isAlone) {
                        misses.push(`${title}, ${names[number]}: nothing at ${wanted}`);
                    }
                }
            });
        }
        return misses;
    });
    assert.deepEqual(misses, []);
    await close(page);
});

await test("head, findings and tables say what kalo summary and kalo check say", async () => {
    const page = await open(report);
    const facts = await page.locator("#facts").innerText();
    const lines = run(kalo, ["summary", recording]).split("\n\n")[0].split("\n").filter((line) => !line.startsWith("input"));
    for (const line of lines) {
        assert.ok(facts.replace(/\s+/g, " ").includes(line.slice(11).replace(/\s+/g, " ")), line);
    }
    let check = "";
    try {
        run(kalo, ["check", "--json", recording]);
    } catch (error) {
        check = error.stdout; // there are faults
    }
    const groups = check.split("\n").filter(Boolean).map((line) => JSON.parse(line));
    assert.ok(groups.length > 3);
    const rows = await page.locator("#finding-table tbody tr").allInnerTexts();
    assert.equal(rows.length, groups.length);
    for (const group of groups) {
        assert.ok(rows.some((row) => row.includes(group.message) && row.includes(String(group.count)) && row.includes(group.kind)), group.message);
    }
    const summary = JSON.parse(run(kalo, ["summary", "--json", recording]));
    const senders = await page.locator("#summary-tables table").first().locator("tbody tr").count();
    assert.equal(senders, summary.senders.length);
    await close(page);
});

// ---- zooming and pointing

const ranges = (page) => page.evaluate(() => kaloReport.drawn.map(({plot}) => plot.xAxisRange().map(Math.round)));
const isOne = (list) => new Set(list.map((range) => range.join())).size === 1;

await test("zooming one plot zooms all, and back", async () => {
    const page = await open(report);
    const before = await ranges(page);
    assert.ok(before.length > 10 && isOne(before));
    const strips = await page.locator("#strips").innerHTML();
    const graph = page.locator(".graph").nth(3);
    await graph.scrollIntoViewIfNeeded();
    const box = await graph.boundingBox();
    await page.mouse.move(box.x + box.width * 0.4, box.y + 60);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width * 0.6, box.y + 62, {steps: 5});
    await page.mouse.up();
    const zoomed = await ranges(page);
    assert.ok(isOne(zoomed), "all plots show the same time");
    const share = (zoomed[0][1] - zoomed[0][0]) / (before[0][1] - before[0][0]);
    assert.ok(share > 0.15 && share < 0.3, `a fifth is left: ${share}`);
    assert.notEqual(await page.locator("#strips").innerHTML(), strips, "the strips zoom, too");
    await page.mouse.dblclick(box.x + box.width / 2, box.y + 60);
    assert.deepEqual(await ranges(page), before);
    await page.getByRole("button", {name: "Zoom in", exact: true}).first().click();
    assert.ok((await ranges(page))[5][1] - (await ranges(page))[5][0] < (before[0][1] - before[0][0]) * 0.6);
    await page.getByRole("button", {name: "Whole time"}).click();
    assert.deepEqual(await ranges(page), before);
    await close(page);
});

await test("the mark follows from plot to track, and back", async () => {
    const page = await open(report);
    const fixes = decoded(recording, "GGA").filter((record) => "latitude" in record);
    for (const share of [0.25, 0.5, 0.8]) {
        const graph = page.locator(".graph").nth(1);
        await graph.scrollIntoViewIfNeeded();
        const box = await graph.boundingBox();
        await page.mouse.move(box.x + 60 + (box.width - 60) * share, box.y + 50);
        const {time, mark, cursors} = await page.evaluate(() => {
            const {map} = kaloReport.track;
            const place = map.getContainer().getBoundingClientRect();
            const path = document.querySelector("#track-map .mark").getBoundingClientRect();
            const at = map.containerPointToLatLng([path.x + path.width / 2 - place.x, path.y + path.height / 2 - place.y]);
            return {time: kaloReport.pointed(), mark: at,
                cursors: [...document.querySelectorAll(".cursor")].map((cursor) => cursor.hidden ? "" : cursor.style.left)};
        });
        const fix = fixes.reduce((a, b) => Math.abs(b.time * 1000 - time) < Math.abs(a.time * 1000 - time) ? b : a);
        assert.ok(Math.abs(fix.time * 1000 - time) < 1500, "the time is one of the recording");
        const metres = Math.hypot(fix.latitude - mark.lat, (fix.longitude - mark.lng) * Math.cos(fix.latitude * Math.PI / 180)) * 111195;
        assert.ok(metres < 8, `the mark is ${metres} m from the position of that time`);
        assert.equal(new Set(cursors).size, 1);
        assert.notEqual(cursors[0], "");
    }
    // and back
    const fix = fixes[20];
    const place = await page.evaluate((fix) => {
        const {map} = kaloReport.track;
        map.getContainer().scrollIntoView({block: "center"});
        const box = map.getContainer().getBoundingClientRect();
        const at = map.latLngToContainerPoint([fix.latitude, fix.longitude]);
        return [box.x + at.x, box.y + at.y];
    }, fix);
    await page.mouse.move(place[0] + 1, place[1] + 3);
    const time = await page.evaluate(() => kaloReport.pointed());
    assert.ok(Math.abs(time - fix.time * 1000) <= 2000, `${time} for ${fix.time}`);
    const clock = await page.locator("#clock").innerText();
    assert.ok(clock.endsWith("UTC"), clock);
    await close(page);
});

await test("begin and end of the track are its earliest and its latest position", async () => {
    const log = path.join(folder, "order.log");
    const fix = (clock, latitude) => sentence(`GPGGA,${clock},${latitude}.0000,N,00000.0000,E,4,12,0.8,12,M,45,M,1.0,0001`);
    fs.writeFileSync(log, [sentence("GPZDA,100000,14,03,2026,00,00"), fix(120000, 5012), fix(120001, 5013),
        fix(110000, 5010), fix(110001, 5011), ""].join("\r\n"));
    const page = await open(makeReport("order", [log]));
    const ends = await page.evaluate(() => kaloReport.track.ends.map((end) => end.getLatLng().lat));
    assert.deepEqual(ends.map((latitude) => Math.round(latitude * 60 - 3000)), [10, 13]);
    await close(page);
});

await test("a stray date does not hide the other records", async () => {
    const log = path.join(folder, "stray.log");
    const heading = (seconds) => sentence(`HEHDT,${seconds},T`);
    const date = (year, seconds) => sentence(`GPZDA,1200${String(seconds).padStart(2, "0")},14,03,${year},00,00`);
    const lines = [];
    for (let seconds = 0; seconds < 50; ++seconds) {
        lines.push(date(2026, seconds), heading(seconds));
    }
    lines.push(date(2006, 50), heading(50), "");
    fs.writeFileSync(log, lines.join("\r\n"));
    const page = await open(makeReport("stray", [log]));
    const seen = await page.evaluate(() => ({view: kaloReport.view(), hint: document.getElementById("voyage-hint").innerText}));
    assert.deepEqual(seen.view.map((time) => new Date(time).toISOString().slice(0, 19)), ["2026-03-14T11:59:59", "2026-03-14T12:00:49"]);
    assert.match(seen.hint, /2 records have dates far outside it/);
    await page.locator("#zoom-in").click();
    const [begin, end] = await page.evaluate(() => kaloReport.view());
    assert.ok(end - begin < 30000, `${end - begin} ms are shown`);
    await close(page);
});

await test("positions beyond the end of the map are counted", async () => {
    const log = path.join(folder, "pole.log");
    const fix = (clock, latitude) => sentence(`GPGGA,${clock},${latitude}00.0000,N,00000.0000,E,4,12,0.8,12,M,45,M,1.0,0001`);
    fs.writeFileSync(log, [sentence("GPZDA,115959,14,03,2026,00,00"), fix(120000, 84), fix(120001, 88), fix(120002, 89), ""].join("\r\n"));
    const page = await open(makeReport("pole", [log]));
    assert.match(await page.locator("#track-hint").innerText(), /2 drawn positions beyond 85.05° of latitude/);
    await close(page);
});

await test("a period without records says so", async () => {
    const page = await open(makeReport("none", ["--since", "2030-01-01T00:00:00Z", recording]));
    assert.equal(await page.locator("#health").innerText(), "no records in this period");
    assert.equal(await page.locator("#summary").isVisible(), false);
    await close(page);
});

await test("everything works by keyboard alone", async () => {
    const page = await open(report);
    const whole = await ranges(page);
    const focusOn = async (isWanted) => {
        for (let i = 0; i < 200; ++i) {
            await page.keyboard.press("Tab");
            if (await page.evaluate(isWanted)) {
                return;
            }
        }
        assert.fail("Tab never comes there");
    };
    await focusOn(() => document.activeElement.id === "zoom-in");
    await page.keyboard.press("Enter");
    assert.ok(isOne(await ranges(page)));
    assert.notDeepEqual(await ranges(page), whole);
    await focusOn(() => document.activeElement.id === "track-map");
    const centre = () => page.evaluate(() => kaloReport.track.map.getCenter().lng);
    const before = await centre();
    await page.keyboard.press("ArrowRight");
    await page.waitForTimeout(400); // the map glides
    assert.notEqual(await centre(), before, "arrow keys move the map");
    await focusOn(() => document.activeElement.classList.contains("graph"));
    await page.keyboard.press("Home");
    assert.deepEqual(await ranges(page), whole);
    await page.keyboard.press("ArrowRight");
    const first = await page.evaluate(() => kaloReport.pointed());
    await page.keyboard.press("ArrowRight");
    assert.ok(await page.evaluate(() => kaloReport.pointed()) > first, "arrow keys move the mark");
    assert.equal(await page.locator("#track-map .mark").count(), 1);
    await page.keyboard.press("+");
    assert.notDeepEqual(await ranges(page), whole);
    await page.keyboard.press("Escape");
    assert.equal(await page.locator("#track-map .mark").count(), 0);
    await focusOn(() => document.activeElement.textContent === "times");
    await page.keyboard.press("Enter");
    const times = await page.locator("#finding-table tbody td:nth-child(3)").allInnerTexts();
    assert.deepEqual(times.map(Number), times.map(Number).sort((a, b) => a - b), "sorted by number");
    await close(page);
});

// ---- sizes, colours, access

for (const [width, height] of [[1400, 900], [820, 1100], [390, 800]]) {
    for (const dark of [false, true]) {
        await test(`${width} pixels wide, ${dark ? "dark" : "light"}: nothing sticks out, and axe finds no serious fault`, async () => {
            const page = await open(report, {width, height, dark});
            const wide = await page.evaluate(() => document.documentElement.scrollWidth);
            assert.ok(wide <= width, `the page is ${wide} pixels wide`);
            const unfilled = await page.evaluate(() => [...document.querySelectorAll(".graph")].filter((graph) =>
                Math.abs(graph.clientWidth - graph.querySelector("canvas").clientWidth) > 1).length);
            assert.equal(unfilled, 0, "each plot fills its place");
            await page.screenshot({path: path.join(folder, `voyage-${width}${dark ? "-dark" : ""}.png`), fullPage: true});
            await page.evaluate(axe);
            const {violations} = await page.evaluate(() => axe.run(document, {resultTypes: ["violations"]}));
            const serious = violations.filter(({impact}) => impact === "serious" || impact === "critical")
                .map(({id, nodes}) => `${id}: ${nodes.slice(0, 3).map((node) => node.html.slice(0, 120)).join(" | ")}`);
            assert.deepEqual(serious, []);
            await close(page);
        });
    }
}

// Colours as people see them who lack the cones for red (protan) or for green (deutan): the matrices of
// Machado, Oliveira and Fernandes (2009) for the whole deficiency, on linear RGB.
const sights = {
    all: [[1, 0, 0], [0, 1, 0], [0, 0, 1]],
    protan: [[0.152286, 1.052583, -0.204868], [0.114503, 0.786281, 0.099216], [-0.003882, -0.048116, 1.051998]],
    deutan: [[0.367322, 0.860646, -0.227968], [0.280085, 0.672501, 0.047413], [-0.01182, 0.04294, 0.968881]]};
const linear = (hex) => hex.match(/[0-9a-f]{2}/gi).map((two) => {
    const c = parseInt(two, 16) / 255;
    return c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
});
function lab(hex, sight) {
    const rgb = linear(hex);
    const [r, g, b] = sights[sight].map((row) => Math.min(1, Math.max(0, row[0] * rgb[0] + row[1] * rgb[1] + row[2] * rgb[2])));
    const f = (t) => t > 216 / 24389 ? Math.cbrt(t) : (24389 / 27 * t + 16) / 116;
    const [x, y, z] = [(0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505, 0.2126 * r + 0.7152 * g + 0.0722 * b, (0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.089].map(f);
    return [116 * y - 16, 500 * (x - y), 200 * (y - z)];
}
const difference = (a, b, sight) => Math.hypot(...lab(a, sight).map((value, i) => value - lab(b, sight)[i]));
const contrast = (a, b) => {
    const [x, y] = [a, b].map((hex) => 0.05 + linear(hex).reduce((sum, c, i) => sum + c * [0.2126, 0.7152, 0.0722][i], 0)).sort((m, n) => n - m);
    return x / y;
};

await test("colours are told apart without red or green, and stand out from the paper", async () => {
    const page = await open(report);
    const {themes, patterns, qualityPatterns} = await page.evaluate(() => kaloReport.looks);
    for (const [name, paper] of [["light", "#f4f6f8"], ["dark", "#1b232c"]]) {
        const looks = [["series", themes[name].series, patterns],
            ["quality", Object.values(themes[name].quality), Object.keys(themes[name].quality).map((key) => qualityPatterns[key])]];
        for (const [what, colours, dashes] of looks) {
            colours.forEach((a, i) => {
                assert.ok(contrast(a, paper) >= 3, `${name} ${what} ${a} stands out from ${paper}: ${contrast(a, paper)}`);
                colours.slice(i + 1).forEach((b, k) => {
                    const isDashedOtherwise = JSON.stringify(dashes[i]) !== JSON.stringify(dashes[i + 1 + k]);
                    // The first four must do without their patterns, as sample and line are small.
                    const least = what === "series" && i + 1 + k < 4 ? 20 : isDashedOtherwise || a === b ? 0 : 20;
                    for (const sight of Object.keys(sights)) {
                        assert.ok(difference(a, b, sight) >= least, `${name} ${what} ${a} and ${b}, ${sight}: ${difference(a, b, sight)}`);
                    }
                });
            });
        }
    }
    await close(page);
});

await test("dark and light change while the page is open", async () => {
    const page = await open(report);
    const colours = () => page.evaluate(() => kaloReport.drawn[0].plot.getColors()[0] + getComputedStyle(document.body).backgroundColor);
    const light = await colours();
    await page.emulateMedia({colorScheme: "dark"});
    const dark = await colours();
    assert.notEqual(dark, light);
    await close(page);
});

await test("prints on A4", async () => {
    const page = await open(report, {dark: true});
    const pdf = await page.pdf({path: path.join(folder, "voyage.pdf"), preferCSSPageSize: true, printBackground: true});
    const boxes = [...pdf.toString("latin1").matchAll(/\/MediaBox\s*\[\s*0 0 ([\d.]+) ([\d.]+)\s*\]/g)].map((box) => [Math.round(box[1]), Math.round(box[2])]);
    assert.ok(boxes.length >= 3 && boxes.length <= 20, `${boxes.length} pages`);
    const pictures = pdf.toString("latin1").match(/\/Subtype\s*\/Image/g) || [];
    const plots = await page.locator(".graph").count();
    assert.ok(pictures.length >= plots, `${pictures.length} pictures of ${plots} plots`);
    boxes.forEach((box) => assert.deepEqual(box, [595, 842], "points of A4"));
    const printed = await page.evaluate(() => {
        window.dispatchEvent(new Event("beforeprint"));
        const widths = [...document.querySelectorAll("#main canvas, #main svg, #main table")]
            .filter((one) => !one.closest(".leaflet-pane")).map((one) => one.getBoundingClientRect().right);
        const paper = getComputedStyle(document.body).backgroundColor;
        window.dispatchEvent(new Event("afterprint"));
        return {widest: Math.max(...widths), paper};
    });
    assert.ok(printed.widest <= 705, `${printed.widest} pixels fit on the page`);
    assert.equal(printed.paper, "rgb(255, 255, 255)", "paper is white, also from a dark screen");
    await close(page);
});

// ---- hostile texts

await test("texts of the input are inert", async () => {
    const marks = ["</script><script>window.harm=1</script>", "<img src=x onerror=window.harm=2>", "\"'><svg onload=window.harm=3>",
        "\u202Eevil\u2066", "<!--<script>", "]]>", "${window.harm=4}", "&lt;b&gt;"];
    const lines = [sentence("GPZDA,120000,14,03,2026,00,00")];
    marks.forEach((mark, i) => {
        lines.push(`${mark} ${sentence(`GPGGA,1200${String(i).padStart(2, "0")},5012.3457,N,00000.2500,E,4,12,0.8,12,M,45,M,1.0,0001`)}`);
        lines.push(`${mark} ${sentence(`HEHDT,${i}1.0,T`)}`, sentence(`PSIMSSB,1200${String(i).padStart(2, "0")},${mark.replace(/,/g, "")},A,,C,H,M,1${i},2${i},5,1,N,,`));
        lines.push(`STR;${mark};place ${mark};RTCM 3.2;1004(1);2;GPS;NET${mark};GBR;50.${i};0.1;1;0;gen;none;B;N;9600;x`);
        lines.push(`nonsense ${mark}`);
        lines.push(`$${mark},1,2*00`);
    });
    const odd = path.join(folder, "</title><b>\u202Ename'\".log");
    const file = odd.replace("</", "<"); // a name cannot hold a slash
    fs.writeFileSync(file, `${lines.join("\r\n")}\r\n`);
    const page = await open(makeReport("hostile", [file]));
    const state = await page.evaluate(() => ({
        harm: window.harm, text: document.body.innerText, title: document.title,
        odd: [...document.querySelectorAll("img, b, script[src], [onerror], [onload]")].map((one) => one.outerHTML.slice(0, 80)),
        scripts: document.scripts.length, series: kaloReport.drawn.length}));
    assert.equal(state.harm, undefined);
    assert.deepEqual(state.odd, []);
    assert.equal(state.scripts, 2);
    assert.ok(state.series > 0);
    assert.ok(!/[\u202a-\u202e\u2066-\u2069]/.test(state.text + state.title), "no mark turns the direction");
    for (const wanted of ["</script><script>window.harm=1</script>", "<img src=x onerror=window.harm=2>", "\\u{202E}evil\\u{2066}"]) {
        assert.ok(state.text.includes(wanted), `${wanted} is shown as it was sent`);
    }
    await close(page);
});

// ---- sourcetables

await test("a sourcetable can be sorted and is on a map", async () => {
    const table = path.join(folder, "table.txt");
    const rows = [["BRAVO", 50.5, 8.25, 9600], ["ALPHA", -33.25, 151, 400], ["CHARLIE", 1.5, 255.5, 19200]];
    fs.writeFileSync(table, rows.map(([name, latitude, longitude, rate]) =>
        `STR;${name};Place;RTCM 3.2;1004(1);2;GPS;NET;DEU;${latitude};${longitude};1;0;gen;none;B;N;${rate};misc\r\n`).join("") + "ENDSOURCETABLE\r\n");
    const page = await open(makeReport("table", [table]));
    const column = (head) => page.evaluate((head) => {
        const place = [...document.querySelectorAll("#stream-table th")].findIndex((cell) => cell.textContent === head);
        return [...document.querySelectorAll("#stream-table tbody tr")].map((row) => row.children[place].textContent);
    }, head);
    assert.deepEqual(await column("mountpoint"), ["BRAVO", "ALPHA", "CHARLIE"]);
    await page.getByRole("button", {name: "mountpoint"}).click();
    assert.deepEqual(await column("mountpoint"), ["ALPHA", "BRAVO", "CHARLIE"]);
    await page.getByRole("button", {name: "bit/s"}).click();
    assert.deepEqual(await column("bit/s"), ["400", "9600", "19200"]);
    await page.getByRole("button", {name: "bit/s"}).click();
    assert.deepEqual(await column("bit/s"), ["19200", "9600", "400"]);
    assert.equal(await page.locator("#stream-map .stream").count(), 3);
    assert.equal(await page.locator("#voyage").isVisible(), false, "no plots without measurements");
    await close(page);
});

await test("a map of streams begins behind the widest space and ends at 85 degrees", async () => {
    const table = path.join(folder, "pacific.txt");
    const rows = [["FIJI", -17.5, 178.5], ["SAMOA", -13.75, 188.25], ["TONGA", -21.25, -175], ["POLE", 90, 0]];
    fs.writeFileSync(table, rows.map(([name, latitude, longitude]) =>
        `STR;${name};Place;RTCM 3.2;1004(1);2;GPS;NET;FJI;${latitude};${longitude};1;0;gen;none;B;N;400;misc\r\n`).join("") + "ENDSOURCETABLE\r\n");
    const page = await open(makeReport("pacific", [table]));
    const {hint, bounds, places} = await page.evaluate(() => ({
        hint: document.getElementById("stream-hint").innerText,
        bounds: kaloReport.streams.map.getBounds().toBBoxString().split(",").map(Number),
        places: kaloReport.streams.marks.map((mark) => [mark.getLatLng().lat, mark.getLatLng().lng])}));
    assert.match(hint, /^3 streams of 4 on the map, 1 beyond 85° of latitude\./);
    assert.deepEqual(places, [[-17.5, 178.5], [-13.75, 188.25], [-21.25, 185]]);
    assert.ok(bounds[2] - bounds[0] < 60, `the map shows ${bounds}`);
    await close(page);
});

// ---- acoustic beacons

await test("beacons stand where their records say, in the frame that they say", async () => {
    const log = path.join(folder, "beacons.log");
    fs.writeFileSync(log, ["GPZDA,120000,14,03,2026,00,00", "PSIMSSB,120001,B1,A,,C,H,M,30,40,5,1,N,,", "PSIMSSB,120002,B1,A,,C,H,M,-30,-40,5,1,N,,",
        "PSIMSSB,120003,B2,A,,C,N,M,100,0,5,1,N,,", "PSIMSSB,120004,B3,A,,U,N,M,7000010,500000,5,1,N,,", "PSIMSSB,120005,B3,A,,U,N,M,7000000,500000,5,1,N,,",
        "PSIMLBP,120006,,R1,A,C,10,20,5,1,1,0,1"].map((body) => `${sentence(body)}\r\n`).join("") + "14 MAR 2026 12:00:07:000 B:12 X:105.2 Y:-33.7\r\n");
    const page = await open(makeReport("beacons", [log]));
    const plots = await page.evaluate(() => {
        const side = (pixels) => Math.abs(pixels) < 5 ? 0 : Math.sign(pixels);
        return [...document.querySelectorAll("#beacon-plots figure")].map((figure) => {
        const box = figure.querySelector("rect.ground").getBoundingClientRect();
        return {title: figure.querySelector("h3").textContent, beacons: [...figure.querySelectorAll(".beacon")].map((mark) => {
            const at = mark.getBoundingClientRect();
            return [side(at.x + at.width / 2 - box.x - box.width / 2), side(box.y + box.height / 2 - at.y - at.height / 2),
                mark.querySelector("title").textContent.split(": ")[1].split(", 2026")[0]];
        })};
        });
    });
    // To the right or left of the middle, above or below it.
    assert.deepEqual(plots, [
        {title: "From the bow (m)", beacons: [[1, 1, "30.00 m starboard, 40.00 m ahead"], [-1, -1, "-30.00 m starboard, -40.00 m ahead"]]},
        {title: "North up (m)", beacons: [[0, 1, "0.00 m east, 100.00 m north"]]},
        {title: "Local grid (m)", beacons: [[0, 0, "20.00 m east, 10.00 m north"]]},
        {title: "UTM (m)", beacons: [[0, 1, "500000.00 m easting, 7000010.00 m northing"], [0, -1, "500000.00 m easting, 7000000.00 m northing"]]},
        {title: "X and Y as sent", beacons: [[0, 0, "105.20 X, -33.70 Y"]]}]);
    await close(page);
});

// ---- much input

await test("prefixes of 20 kB leave the page as wide as the window", async () => {
    const log = path.join(folder, "wide.log");
    const lines = [sentence("GPZDA,120000,14,03,2026,00,00")];
    for (let i = 0; i < 400; ++i) {
        lines.push(`${"long prefix ".repeat(1700)}${i} ${sentence(`HEHDT,${i % 360},T`)}`);
    }
    fs.writeFileSync(log, `${lines.join("\r\n")}\r\n`);
    const file = makeReport("wide", [log]);
    assert.ok(fs.statSync(file).size < 2e6, `${fs.statSync(file).size} bytes`);
    const page = await open(file);
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= 1400);
    await close(page);
});

await test("a long log is thinned and keeps its extremes", async () => {
    const log = path.join(folder, "long.log");
    fs.writeFileSync(log, execFileSync(voyage, ["--seed", "5", "--bytes", "6000000"], {maxBuffer: 1 << 28}));
    const file = makeReport("long", ["--max-points", "500", log]);
    assert.ok(fs.statSync(file).size < 1.5e6, `${fs.statSync(file).size} bytes`);
    const summary = JSON.parse(run(kalo, ["summary", "--json", log]));
    // The best of three: the processor may be busy elsewhere.
    let after = Infinity;
    for (let i = 0; i < 3 && after >= 2000; ++i) {
        const page = await open(file);
        after = Math.min(after, await page.evaluate(() => kaloReport.drawnAfter));
        await close(page);
    }
    assert.ok(after < 2000, `drawn after ${after} ms`);
    const page = await open(file);
    const {series, hint} = await page.evaluate(() => ({
        series: kaloReport.data.panels.flatMap((panel) => panel.series).map((one) => ({type: one.sender.type, prefix: one.sender.prefix, quantity: one.quantity, count: one.count, length: one.length,
            points: one.values.length, least: Math.min(...one.values.filter((v) => v !== null)), greatest: Math.max(...one.values.filter((v) => v !== null))})),
        hint: document.getElementById("voyage-hint").innerText}));
    assert.match(hint, /thinned/);
    const thinned = series.filter((one) => one.length > 1 && one.prefix === "");
    assert.ok(thinned.length > 5);
    let compared = 0;
    for (const one of thinned) {
        assert.ok(one.points <= 520, `${one.type} ${one.quantity}: ${one.points} points`);
        const same = summary.values.find((value) => value.type === one.type && value.value === one.quantity && value.count === one.count);
        if (same) { // else several senders share the range
            ++compared;
            assert.ok(Math.abs(same.least - one.least) < 1e-6 && Math.abs(same.greatest - one.greatest) < 1e-6, `${one.type} ${one.quantity}`);
        }
    }
    assert.ok(compared > 5, `${compared} compared`);
    await close(page);
});

if (picture) {
    const page = await open(report, {width: 1280, height: 1060});
    await page.evaluate(() => document.getElementById("voyage").scrollIntoView());
    await page.evaluate(() => window.scrollTo(0, 0));
    const graph = page.locator(".graph").nth(1);
    const box = await graph.boundingBox();
    await page.mouse.move(box.x + box.width * 0.55, box.y + 70);
    await page.screenshot({path: picture});
    await close(page);
    console.log(`written ${picture}`);
}
await browser.close();
console.log(faults.length === 0 ? "all passed" : `${faults.length} failed: ${faults.join("; ")}`);
process.exitCode = faults.length === 0 ? 0 : 1;
