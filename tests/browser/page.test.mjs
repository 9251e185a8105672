// What people see of the HTML report, in Chromium: nothing is said on the console, nothing is
// asked of anybody, the figures are those of the JSON.

import assert from "node:assert/strict";
import {spawnSync} from "node:child_process";
import {readFileSync, readdirSync, statSync} from "node:fs";
import {dirname, join} from "node:path";
import {createRequire} from "node:module";
import {after, before, describe, test} from "node:test";

import axe from "axe-core";
import {chromium} from "playwright-core";

import {readStrips, throughTicks} from "./geometry.mjs";
import {all, hostileText, makeFolder, makePageOfSeveral, makePages} from "./pages.mjs";

const pages = makePages();
const pixel = 0.5;
let browser;

before(async () => {
  // A container has no user namespaces for the sandbox, and the pages are our own.
  browser = await chromium.launch({executablePath: process.env.CHROMIUM, args: ["--no-sandbox"]});
});
after(() => browser?.close());

/** A page that was opened, with everything that it said and asked for. */
async function open(url, settings = {}) {
  const context = await browser.newContext({viewport: {width: 1280, height: 900}, ...settings});
  const page = await context.newPage();
  const noise = [];
  page.on("console", (message) => noise.push(`console: ${message.text()}`));
  page.on("pageerror", (error) => noise.push(`error: ${error.message}`));
  page.on("dialog", (dialog) => {
    noise.push(`dialog: ${dialog.message()}`);
    dialog.dismiss();
  });
  page.on("request", (request) => {
    if (request.url() !== url && !request.url().startsWith("blob:")) {
      noise.push(`request: ${request.url()}`);
    }
  });
  page.on("requestfailed", (request) => noise.push(`failed: ${request.failure().errorText}`));
  await page.goto(url);
  return {page, noise, close: () => context.close()};
}

/** Opens a page for a test, and closes it. */
async function withPage(url, settings, look) {
  const opened = await open(url, settings);
  try {
    await look(opened.page, opened.noise);
  } finally {
    await opened.close();
  }
}

const sideOf = (json, side) => json.strides.find((columns) => columns.foot === side);

/** What a strip or a cell of a side shows: places in time, values, and whether they count. */
function shownOf(json, key, side) {
  if (side !== "cycle") {
    const columns = sideOf(json, side);
    return columns.start.map((start, i) => ({
      time: (start + columns.end[i]) / 2,
      value: columns.values[key][i],
      counts: columns.status[i] === "included",
    }));
  }
  const {two_feet_cycles: cycles} = json;
  return cycles[key].map((value, i) => {
    const right = cycles.right[i] !== null;
    const columns = sideOf(json, right ? "right" : "left");
    const stride = right ? cycles.right[i] : cycles.left[i];
    return {
      time: (columns.start[stride] + columns.end[stride]) / 2,
      value,
      counts: cycles.status[i] === "included",
    };
  });
}

/** The record of a parameter on a side, or of the two feet together. */
function recordOf(json, key, side) {
  return Object.values(json.parameters).find((record) => record.parameter === key &&
    (record.side === side || side === "cycle"));
}

const isNear = (a, b) => Math.abs(a - b) <= pixel;

function assertStripShows(strip, json) {
  const name = `${strip.key} ${strip.side}`;
  const x = throughTicks(strip.times);
  const y = throughTicks(strip.values);
  const record = recordOf(json, strip.key, strip.side);
  if (record.median !== null) {
    assert.ok(isNear(strip.line, y(record.median)), `${name}: median`);
  }
  if (strip.band && record.q1 !== null) {
    const within = (place) => Math.min(Math.max(place, strip.top + 4), strip.bottom - 4);
    assert.ok(isNear(strip.band.top, within(y(record.q3))), `${name}: third quartile`);
    assert.ok(isNear(strip.band.bottom, within(y(record.q1))), `${name}: first quartile`);
  }
  if (strip.isBinned) {
    return;
  }
  const drawn = {dots: [...strip.dots], rings: [...strip.rings], gaps: [...strip.gaps]};
  const take = (kind, time, place) => {
    const at = drawn[kind].findIndex((dot) => isNear(dot.x, x(time)) &&
      (place === undefined || isNear(dot.y, place)));
    assert.notEqual(at, -1, `${name}: no ${kind} at ${time} s`);
    drawn[kind].splice(at, 1);
  };
  const hasArrow = (time, isUp) =>
    strip.arrows.some((arrow) => arrow.isUp === isUp && isNear(arrow.x, x(time)));
  let arrows = 0;
  for (const {time, value, counts} of shownOf(json, strip.key, strip.side)) {
    if (value === null) {
      if (counts) {
        take("gaps", time);
      }
      continue;
    }
    // How far beyond the scale, which ends four pixels from the edges.
    const above = strip.top + 4 - y(value);
    const below = y(value) - (strip.bottom - 4);
    const beyond = Math.max(above, below);
    if (beyond > pixel || (beyond > -pixel && hasArrow(time, above > below))) {
      assert.ok(hasArrow(time, above > below), `${name}: no arrow at ${time} s`);
      arrows += 1;
    } else {
      take(counts ? "dots" : "rings", time, y(value));
    }
  }
  assert.deepEqual(drawn, {dots: [], rings: [], gaps: []}, `${name}: drawn without a value`);
  assert.equal(strip.arrows.length, arrows, `${name}: arrows`);
}

/** Whether a text is a number rounded as it says. */
function assertRounded(text, value, decimals, what) {
  if (value === null) {
    assert.equal(text, "–", what);
    return;
  }
  assert.match(text, decimals === 0 ? /^-?\d+$/ : new RegExp(`^-?\\d+\\.\\d{${decimals}}$`), what);
  assert.ok(Math.abs(Number(text) - value) <= 0.5000001 * 10 ** -decimals, `${what}: ${text}`);
}

/** What the cursor says, against the JSON. */
async function assertCursorSays(page, json) {
  const shown = await page.evaluate(() => ({
    words: document.querySelector(".cursor-bar output").textContent.split("\n"),
    spoken: document.querySelector(".cursor-bar input").getAttribute("aria-valuetext"),
    cells: [...document.querySelectorAll("td.at-cursor")].map(
      (cell) => ({...cell.dataset, text: cell.textContent})),
    marks: [...document.querySelectorAll(".panel rect.cursor")].map((mark) => (
      {side: mark.closest("[data-side]").dataset.side, visible: mark.getAttribute("visibility"),
        box: mark.getBoundingClientRect().toJSON(),
        plot: mark.closest("svg.strip").getBoundingClientRect().toJSON()})),
    from: Number(document.querySelector("article").dataset.from),
    to: Number(document.querySelector("article").dataset.to),
  }));
  const at = {};
  for (const words of shown.words) {
    const [, foot, index, start, end, rest] =
      words.match(/^(Right|Left) stride (\d+), (-?[\d.]+) to (-?[\d.]+) s, (.*)$/s);
    const side = foot.toLowerCase();
    const columns = sideOf(json, side);
    assertRounded(start, columns.start[index], 2, "start");
    assertRounded(end, columns.end[index], 2, "end");
    const status = {included: "in the statistics", left_out: "left out",
      unlinked: "in no two-feet cycle"}[columns.status[index]];
    assert.ok(rest.startsWith(status), `${rest} for ${status}`);
    assert.equal(rest.includes(":"), columns.reason[index] !== null);
    if (columns.reason[index] !== null) {
      assert.ok(rest.endsWith(columns.reason[index]), rest);
    }
    at[side] = Number(index);
    assert.ok(shown.spoken.includes(words), "what is shown is spoken");
  }
  if (at.right !== undefined && at.left !== undefined) {
    assert.equal(sideOf(json, "right").partner[at.right], at.left);
  }
  for (const {side, key, text} of shown.cells) {
    const whose = side === "cycle" ? (at.right === undefined ? "left" : "right") : side;
    if (at[whose] === undefined) {
      assert.equal(text, "", `${key} ${side}`);
      continue;
    }
    const columns = sideOf(json, whose);
    const value = side === "cycle"
      ? json.two_feet_cycles[key][columns.two_feet_cycle[at[whose]]] ?? null
      : columns.values[key][at[whose]];
    assertRounded(text, value, recordOf(json, key, side).decimals, `${key} ${side}`);
    if (value !== null) {
      assert.ok(shown.spoken.includes(text), `${key} ${side} is spoken`);
    }
  }
  for (const {side, visible, box, plot} of shown.marks) {
    const whose = side === "cycle" ? (at.right === undefined ? "left" : "right") : side;
    assert.equal(visible, at[whose] === undefined ? "hidden" : "visible");
    if (at[whose] !== undefined) {
      const columns = sideOf(json, whose);
      const middle = (columns.start[at[whose]] + columns.end[at[whose]]) / 2;
      const x = plot.left + plot.width * (middle - shown.from) / (shown.to - shown.from);
      assert.ok(Math.abs((box.left + box.right) / 2 - x) < 1, `mark of ${side}`);
    }
  }
  return at;
}

/** Every rule, or, where only the colours have changed, those about colours. */
async function assertAxeFindsNothing(page, what, rules = undefined) {
  await page.evaluate(axe.source);
  const {violations} = await page.evaluate(
    (runOnly) => axe.run(document, runOnly ? {runOnly} : {}), rules);
  assert.deepEqual(violations.map(({id, nodes}) => `${id}: ${nodes[0].html.slice(0, 200)}`), [],
    what);
}

async function assertNoSidewaysScroll(page, what) {
  for (const width of [320, 390, 760, 1280]) {
    await page.setViewportSize({width, height: 900});
    const scroll = await page.evaluate(() => document.documentElement.scrollWidth);
    assert.ok(scroll <= width, `${what}: ${scroll} pixels wide at ${width}`);
  }
  await page.setViewportSize({width: 1280, height: 900});
}

/** The figures and numbers of a page, without what only the script adds. */
function staticContent() {
  const copy = document.querySelector("main").cloneNode(true);
  for (const added of copy.querySelectorAll("rect.cursor, .cursor-bar, #save, .without-script, " +
      "details.strides > div:not(.scroll)")) {
    added.remove();
  }
  for (const cell of copy.querySelectorAll(".at-cursor")) {
    cell.removeAttribute("hidden");
    cell.textContent = "";
  }
  return copy.innerHTML;
}

for (const {name, file, url, json} of pages) {
  describe(`the page of ${name}`, () => {
    test("says nothing, asks for nothing, and obeys its policy", () =>
      withPage(url, {}, async (page, noise) => {
        await page.locator("details.meaning summary").first().click();
        await page.locator("details.strides > summary").click();
        assert.deepEqual(noise, []);
        const ran = await page.evaluate(() => {
          const script = document.createElement("script");
          script.textContent = "window.ranForeignScript = true";
          document.body.append(script);
          const image = document.createElement("img");
          image.src = "https://example.invalid/x.png";
          document.body.append(image);
          document.body.setAttribute("style", "color: red");
          return [window.ranForeignScript, document.body.style.color];
        });
        assert.deepEqual(ran, [undefined, ""]);
        await page.waitForTimeout(50);
        assert.deepEqual(noise.filter((line) => line.startsWith("failed")), ["failed: csp"]);
      }));

    test("has no accessibility finding in light and dark", async () => {
      await withPage(url, {colorScheme: "light"}, (page) => assertAxeFindsNothing(page, "light"));
      await withPage(url, {colorScheme: "dark"},
        (page) => assertAxeFindsNothing(page, "dark", all ? undefined : ["color-contrast"]));
    });

    test("does not scroll sideways", () =>
      withPage(url, {}, (page) => assertNoSidewaysScroll(page, name)));

    test("draws what the JSON says", () => withPage(url, {}, async (page) => {
      const strips = await page.evaluate(readStrips);
      assert.ok(strips.length > 0);
      strips.forEach((strip) => assertStripShows(strip, json));
    }));

    test("has a cursor that keys move", () => withPage(url, {}, async (page) => {
      await page.locator(".cursor-bar input").focus();
      const last = Number(await page.locator(".cursor-bar input").getAttribute("max"));
      await page.keyboard.press("Home");
      const seen = {right: new Set(), left: new Set()};
      for (let place = 0; place <= Math.min(last, 50); place += 1) {
        const at = await assertCursorSays(page, json);
        Object.entries(at).forEach(([side, index]) => seen[side].add(index));
        await page.keyboard.press("ArrowRight");
      }
      if (last <= 50) {
        for (const columns of json.strides) {
          assert.equal(seen[columns.foot].size, columns.start.length, "every stride has its place");
        }
      }
      await page.keyboard.press("End");
      await assertCursorSays(page, json);
    }));

    test("has a cursor that follows the pointer", () => withPage(url, {}, async (page) => {
      for (const {foot, start, end} of json.strides) {
        const plot = page.locator(`.panel .strips > .${foot} svg.strip`).first();
        if (await plot.count() === 0) {
          continue;
        }
        await plot.scrollIntoViewIfNeeded();
        const box = await plot.boundingBox();
        const [from, to] = await page.evaluate(() => {
          const {dataset} = document.querySelector("article");
          return [Number(dataset.from), Number(dataset.to)];
        });
        const apart = Math.max(1, Math.ceil(start.length / 20));
        for (let i = 0; i < start.length; i += apart) {
          const middle = (start[i] + end[i]) / 2;
          await page.mouse.move(box.x + box.width * (middle - from) / (to - from),
            box.y + box.height / 2);
          const at = await assertCursorSays(page, json);
          const isWide = box.width * (end[i] - start[i]) / (to - from) > 4;
          assert.ok(!isWide || at[foot] === i, `${foot} ${i}, and the cursor is at ${at[foot]}`);
        }
      }
    }));

    test("shows the same without its script", () => withPage(url, {}, async (page) => {
      const withScript = await page.evaluate(staticContent);
      await withPage(url, {javaScriptEnabled: false}, async (plain) => {
        assert.ok(await plain.evaluate(staticContent) === withScript);
      });
    }));

    test("holds the JSON that the program writes", () => withPage(url, {}, async (page) => {
      const held = await page.evaluate(
        () => document.getElementById("gait-statistics").textContent);
      assert.deepEqual(JSON.parse(held).walks, [json]);
      const download = page.waitForEvent("download");
      await page.locator("#save").click();
      assert.equal(readFileSync(await (await download).path(), "utf8"), held);
    }));

    test("prints on A4", () => withPage(url, {}, async (page) => {
      const pdf = (await page.pdf({preferCSSPageSize: true})).toString("latin1");
      const sheets = pdf.match(/\/Type\s*\/Page\b/g).length;
      assert.ok(sheets >= 2 && sheets <= 12, `${sheets} pages`);
      assert.match(pdf.slice(pdf.indexOf("/MediaBox")).slice(0, 60),
        /\/MediaBox \[0 0 59[45][.\d]* 84[12]/);
      assert.ok(!/\/Subtype\s*\/Image/.test(pdf), "a bitmap");
      // Between the margins a sheet has 184 by 269 mm.
      await page.setViewportSize({width: 695, height: 1017});
      await page.emulateMedia({media: "print"});
      const cut = await page.evaluate(() =>
        [...document.querySelectorAll("svg.plot")].filter((plot) => {
          const whole = plot.closest(".panel, .halves > div, .figure-frame");
          const {height, right} = whole.getBoundingClientRect();
          return getComputedStyle(whole).breakInside !== "avoid" || height > 1017 || right > 696;
        }).length);
      assert.equal(cut, 0, "figures that a page's end may cut");
    }));

    test("is no larger than it may be", () => {
      assert.ok(statSync(file).size < 6 * 2 ** 20, `${statSync(file).size} bytes`);
    });
  });
}

describe("texts that try to break out", () => {
  test("are shown as they are", () => {
    const hostile = pages.find((page) => page.name.includes("<script>"));
    return withPage(hostile.url, {}, async (page) => {
      assert.equal(await page.locator("h1").textContent(), `Walk ${hostile.name}`);
      const shown = hostileText.replace("\ufffe", "\ufffd");
      assert.equal(await page.locator("dl.about dt").first().textContent(), shown);
      const reasons = await page.locator("details table td:nth-child(3)").allTextContents();
      assert.ok(reasons.includes(shown), "the reason in the list of exclusions");
    });
  });
});

describe("several walks", () => {
  test("in one page have contents, ids of their own and a cursor each", async () => {
    const {url} = makePageOfSeveral(pages.slice(0, 4));
    await withPage(url, {}, async (page, noise) => {
      const ids = await page.evaluate(() =>
        [...document.querySelectorAll("[id]")].map((element) => element.id));
      assert.equal(new Set(ids).size, ids.length);
      const links = page.locator(".contents a");
      assert.equal(await links.count(), 4);
      for (const link of await links.all()) {
        await link.click();
        const target = (await link.getAttribute("href")).slice(1);
        assert.ok(ids.includes(target));
      }
      const before = await page.locator(".cursor-bar output").allTextContents();
      await page.locator(".cursor-bar input").nth(1).focus();
      await page.keyboard.press("End");
      const now = await page.locator(".cursor-bar output").allTextContents();
      assert.notEqual(now[1], before[1]);
      assert.deepEqual([now[0], ...now.slice(2)], [before[0], ...before.slice(2)]);
      assert.deepEqual(noise, []);
      await assertAxeFindsNothing(page, "several walks");
      await assertNoSidewaysScroll(page, "several walks");
    });
  });

  test("in a folder have an index that leads to each", async () => {
    const some = pages.slice(0, 4);
    const folder = makeFolder(some);
    assert.equal(readdirSync(folder).length, some.length + 1);
    await withPage(`file://${join(folder, "index.html")}`, {}, async (page, noise) => {
      await assertAxeFindsNothing(page, "index");
      await assertNoSidewaysScroll(page, "index");
      assert.deepEqual(noise, []);
      const links = await page.locator("th a").all();
      const targets = await Promise.all(links.map(async (link) =>
        [await link.textContent(), await link.getAttribute("href")]));
      for (const [name, target] of targets) {
        await page.goto(`file://${join(folder, target)}`);
        assert.equal(await page.locator("h1").textContent(), `Walk ${name}`);
      }
      assert.equal(targets.length, some.length);
    });
  });
});

/** Why a checker of HTML cannot run; nothing where it can. */
const noChecker = spawnSync("java", ["-version"]).error ? "there is no java" : false;

test("every page is valid HTML", {skip: noChecker}, () => {
  const files = pages.map((page) => page.file);
  files.push(makePageOfSeveral(pages.slice(0, 2)).file, join(makeFolder(pages.slice(0, 2)),
    "index.html"));
  const checker = join(dirname(createRequire(import.meta.url).resolve("vnu-jar/package.json")),
    "build", "dist", "vnu.jar");
  // The checker knows neither hashes in a content policy nor this property of SVG.
  const notKnown = ".*(violates Content Security Policy|vector-effect).*";
  const {status, stdout} = spawnSync("java",
    ["-Xss16m", "-jar", checker, "--stdout", "--Werror", "--filterpattern", notKnown, ...files],
    {encoding: "utf8"});
  assert.equal(status, 0, stdout.slice(0, 4000));
});

test("every kind of walk was looked at", () => {
  assert.ok(pages.length >= (all ? 9 : 5), `${pages.length} pages`);
});
