// What a person does with the report of `show`: sort, filter, look closer, copy, print.

import assert from "node:assert/strict";
import { readFileSync, writeFileSync } from "node:fs";
import { test } from "node:test";

import {
  barriersOn, clipboardOf, limitsOf, namesOf, onPage, reportOf, reportOfResults, resultsOf, textOf, textsOf, toolOf,
} from "./support.mjs";

const bolts = resultsOf({
  tools: [
    toolOf("Bolt 10", "bolt", {
      ClampNormalForce: { pairs: [[0, 0.1], [-32.5, 0.2], [3, 0.3]] }, ClampClosingForce: { values: [0, 100] },
    }),
    toolOf("Bolt 2", "bolt", { ClampNormalForce: { values: [0, 12.25] }, ClampClosingForce: { values: [0, -990] } }),
    toolOf("Bolt 1", "bolt", { ClampNormalForce: { values: [0, 29, null] }, ClampClosingForce: { values: [0, 50] } }),
    toolOf("Bolt 3", "bolt", { ClampNormalForce: { values: [null, null] } }),
    toolOf("bolt 4", "bolt", {}),
  ],
});
const limits = limitsOf({ limits: { BoltNormalForce: 30 }, columns: { Bolts: { ClampClosingForce: 1000 } } });
const reportOfBolts = (language) =>
  reportOfResults(bolts, { language, limits, args: ["--family", "Bolts", "--curves", "all"] });

const header = (page, name) => page.getByRole("button", { name }).first();
const cell = (page, text) => page.getByRole("gridcell").filter({ hasText: text }).first();

test("sorts numbers by value, down, up, and not at all; what is no number comes last", async () => {
  await onPage(reportOfBolts(), async (page) => {
    const stored = ["Bolt 10", "Bolt 2", "Bolt 1", "Bolt 3", "bolt 4"];
    assert.deepEqual(await namesOf(page), stored);
    await header(page, "Max Normal Force").click();
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2", "Bolt 10", "Bolt 3", "bolt 4"]);
    assert.equal(await page.locator("th[aria-sort]").getAttribute("aria-sort"), "descending");
    await header(page, "Max Normal Force").click();
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 2", "Bolt 1", "Bolt 3", "bolt 4"]);
    assert.equal(await page.locator("th[aria-sort]").getAttribute("aria-sort"), "ascending");
    await header(page, "Max Normal Force").click();
    assert.deepEqual(await namesOf(page), stored);
    assert.equal(await page.locator("th[aria-sort]").count(), 0);
  });
});

test("sorts numbers by magnitude", async () => {
  await onPage(reportOfBolts(), async (page) => {
    await header(page, "Max Normal Force").click();
    await page.getByLabel("Sort numbers by magnitude").check();
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 1", "Bolt 2", "Bolt 3", "bolt 4"]);
    await header(page, "Max Normal Force").click();
    assert.deepEqual(await namesOf(page), ["Bolt 2", "Bolt 1", "Bolt 10", "Bolt 3", "bolt 4"]);
  });
});

test("sorts elements by the highest utilisation of their values", async () => {
  await onPage(reportOfBolts(), async (page) => {
    const button = page.getByRole("button", { name: "Sort by utilisation" }).first();
    await button.click();
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 2", "Bolt 1", "Bolt 3", "bolt 4"]);
    await button.click();
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2", "Bolt 10", "Bolt 3", "bolt 4"]);
    assert.equal(await button.getAttribute("aria-pressed"), "true");
    await button.click();
    assert.equal(await button.getAttribute("aria-pressed"), "false");
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 2", "Bolt 1", "Bolt 3", "bolt 4"]);
  });
});

test("sorts names in natural order", async () => {
  await onPage(reportOfBolts(), async (page) => {
    await header(page, "Element").click();
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2", "Bolt 3", "bolt 4", "Bolt 10"]);
    await header(page, "Element").click();
    assert.deepEqual(await namesOf(page), ["Bolt 10", "bolt 4", "Bolt 3", "Bolt 2", "Bolt 1"]);
  });
});

test("filters by the names of elements and groups, whatever the case", async () => {
  const results = resultsOf({
    tools: [
      toolOf("Arm 1", "tool", { TotalToolForces: { values: [0, 450] } }),
      toolOf("Arm 2", "tool", { TotalToolForces: { values: [0, -50] } }),
      toolOf("Bolt 1", "bolt", { ClampNormalForce: { values: [0, 1] } }),
    ],
    toolGroupings: {
      ClampingTools: [{ name: "Left side", tools: ["Arm 1"] }, { name: "Right side", tools: ["Arm 2"] }],
    },
  });
  const path = reportOfResults(results, { args: ["--family", "ClampingTools", "--family", "Bolts"] });
  await onPage(path, async (page) => {
    const filter = page.getByRole("searchbox", { name: "Filter by text" });
    assert.equal(await textOf(page, "[role=status]"), "4 of 4 rows");
    await filter.fill("LEFT");
    assert.deepEqual(await textsOf(page, "section.table tbody th"), ["Arm 1"]);
    assert.deepEqual(await textsOf(page, "h3"), ["Highest utilisations", "Clamping Tools"]);
    assert.equal(await textOf(page, "[role=status]"), "1 of 4 rows");
    await filter.fill("bolt");
    assert.deepEqual(await textsOf(page, "section.table tbody th"), ["Bolt 1", "Bolt 1"]);
    await filter.fill("nobody");
    assert.equal(await textOf(page, "[role=status]"), "0 of 4 rows");
    assert.deepEqual(await textsOf(page, "h2"), ["Summary"]);
    await filter.fill("");
    assert.deepEqual(await textsOf(page, "section.table tbody th"), ["Arm 1", "Arm 2", "Bolt 1", "Bolt 1"]);
  });
});

test("takes elements that are not valid neither for utilised nor by their marks", async () => {
  await onPage(reportOf(["demo", "--unit", "OP30 Joining", "--family", "JoiningTongs"]), async (page) => {
    assert.deepEqual(await namesOf(page), ["Tong A-pillar", "Tong sill (Joining Failed)", "Tong B-pillar"]);
    await page.getByRole("button", { name: "Sort by utilisation" }).first().click();
    assert.deepEqual(await namesOf(page), ["Tong A-pillar", "Tong B-pillar", "Tong sill (Joining Failed)"]);
    await cell(page, "480.25").hover();
    await page.getByRole("tooltip").waitFor();
    assert.deepEqual(await textsOf(page, "#details dt"), ["value", "limit", "step", "time"]);
    await page.getByRole("searchbox").fill("?");
    assert.equal(await textOf(page, "[role=status]"), "0 of 9 rows");
  });
});

test("shows only findings", async () => {
  await onPage(reportOfBolts(), async (page) => {
    await page.getByLabel("Only findings").check();
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 1", "Bolt 3"]);
    await page.getByRole("rowheader", { name: "Bolt 3" }).first().click();
    await page.getByRole("searchbox").fill("bolt 1");
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 1"]);
    assert.equal(await page.locator("section.table:first-of-type table [tabindex='0']").textContent(), "Element");
    await page.getByLabel("Only findings").uncheck();
    await page.getByRole("searchbox").fill("");
    assert.equal((await namesOf(page)).length, 5);
  });
});

test("hides columns and shows them again", async () => {
  await onPage(reportOfBolts(), async (page) => {
    const heads = async () => (await textsOf(page, "section.table:first-of-type thead th"))
      .map((text) => text.replace(/N.*/, "").trim());
    const all = await heads();
    await page.locator("summary").first().click();
    await page.getByLabel("Max Closing Force").uncheck();
    assert.equal(all.length, 5);
    assert.equal((await heads()).length, 4);
    await page.getByRole("rowheader", { name: "Bolt 2" }).first().click();
    await page.keyboard.press("ArrowRight");
    await page.keyboard.press("ArrowRight");
    assert.equal(await page.evaluate(() => document.activeElement.cellIndex), 3);
    await page.locator("summary").first().click();
    await page.getByLabel("Max Supporting Force").uncheck();
    assert.equal(await page.locator("section.table:first-of-type table [tabindex='0']").textContent(), "Bolt 2");
    assert.equal(await page.getByRole("gridcell", { name: "-990" }).count(), 0);
    await page.keyboard.press("Escape");
    assert.equal(await page.locator("details[open]").count(), 0);
    await page.locator("summary").first().click();
    await page.getByLabel("Max Closing Force").check();
    await page.getByLabel("Max Supporting Force").check();
    assert.deepEqual(await heads(), all);
    await page.locator("h1").click();
    assert.equal(await page.locator("details[open]").count(), 0);
  });
});

test("shows a value's limit, utilisation, step and time when it is pointed at or has the focus", async () => {
  const said = ["value-32.5 N", "limit≤ 30", "utilisation108.3 %", "step1", "time0.2"];
  await onPage(reportOfBolts(), async (page) => {
    await cell(page, "-32.5").hover();
    await page.getByRole("tooltip").waitFor();
    assert.deepEqual(await textsOf(page, "#details dl > div"), said);
    assert.deepEqual(await textsOf(page, "#details p"), ["! beyond its limit"]);
    await page.keyboard.press("Escape");
    assert.equal(await page.getByRole("tooltip").count(), 0);
    await cell(page, "12.25").click();
    await page.keyboard.press("Escape");
    await page.keyboard.press("ArrowUp");
    assert.deepEqual(await textsOf(page, "#details dl > div"), said);
    assert.equal(await page.locator(":focus").getAttribute("aria-describedby"), "details");
    await page.getByRole("searchbox").focus();
    assert.equal(await page.getByRole("tooltip").count(), 0);
    await cell(page, "-990").hover();
    await page.getByRole("tooltip").waitFor();
    await page.mouse.move(1, 1);
    await page.getByRole("tooltip").waitFor({ state: "hidden" });
  });
});

test("opens a value's curve with a click or Enter, closes it, and gives the focus back", async () => {
  await onPage(reportOfBolts(), async (page) => {
    const dialog = page.getByRole("dialog", { name: "Bolt 10, Max Normal Force" });
    await cell(page, "-32.5").click();
    await dialog.waitFor();
    assert.equal(await dialog.getByRole("img").count(), 1);
    assert.equal(await dialog.locator("path.curve").count(), 1);
    assert.match(await dialog.locator("path.dots").getAttribute("d"), /^M\d+ \d+h0m\d+ \d+h0m\d+ -?\d+h0$/);
    assert.equal(await dialog.locator("line.limit").count(), 2);
    assert.equal(await dialog.locator("circle.extremeExceeded").count(), 1);
    assert.equal(await textOf(page, "dialog header p"), "OP20, Bolts, Forces");
    assert.deepEqual(await textsOf(page, "dialog dt"), ["value", "limit", "utilisation", "step", "time"]);
    await page.keyboard.press("Escape");
    assert.equal(await dialog.count(), 0);
    await page.keyboard.press("Enter");
    await dialog.waitFor();
    await page.getByRole("button", { name: "Close" }).click();
    assert.equal(await dialog.count(), 0);
    assert.match(await page.locator(":focus").textContent(), /^-32\.5/);
    await page.keyboard.press("Enter");
    await dialog.waitFor();
    await page.mouse.click(5, 5);
    assert.equal(await dialog.count(), 0);
  });
});

test("is walked through with keys, of which one table takes one stop", async () => {
  await onPage(reportOfBolts(), async (page) => {
    const focused = () => page.evaluate(() => document.activeElement.textContent.trim());
    const press = async (...keys) => {
      for (const key of keys) await page.keyboard.press(key);
      return focused();
    };
    await page.locator("thead button").first().focus();
    assert.equal(await press("ArrowDown"), "Bolt 10");
    assert.equal(await press("ArrowDown", "ArrowRight"), "12.25");
    assert.equal(await press("End", "Home"), "Bolt 2");
    assert.equal(await press("ArrowLeft", "ArrowDown", "ArrowRight"), "29 *");
    assert.equal(await press("Control+End", "Control+Home"), "Element");
    assert.equal(await press("PageDown"), "bolt 4");
    assert.equal(await press("ArrowUp", "PageUp"), "Element");
    await page.keyboard.press("Enter");
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2", "Bolt 3", "bolt 4", "Bolt 10"]);
    assert.equal(await page.locator("section.table:first-of-type table [tabindex='0']").count(), 1);
    await page.keyboard.press("Tab");
    assert.equal(await page.locator("section.table:first-of-type table :focus").count(), 0);
  });
});

test("leads from the highest utilisations to their values, whatever hides them", async () => {
  await onPage(reportOfBolts(), async (page) => {
    await page.getByRole("searchbox").fill("nobody");
    await page.locator(".worst a").first().click();
    await page.locator("td:focus").waitFor();
    assert.match(await page.locator(":focus").textContent(), /^-32\.5/);
    assert.equal(await page.getByRole("searchbox").inputValue(), "");
    await page.locator("summary").first().click();
    await page.getByLabel("Max Closing Force").uncheck();
    await page.locator(".worst a").nth(1).click();
    await page.locator("td:focus", { hasText: "-990" }).waitFor();
    await page.locator("summary").first().click();
    assert.equal(await page.getByLabel("Max Closing Force").isChecked(), true);
  });
});

for (const clipboard of ["its own", "none of its own"]) {
  test(`copies what is shown as tab-separated values with plain numbers, with ${clipboard}`, async () => {
    await onPage(reportOfBolts("de_DE.UTF-8"), async (page) => {
      if (clipboard === "none of its own")
        await page.evaluate(() => Object.defineProperty(navigator, "clipboard", { value: undefined }));
      await page.getByLabel("Nur Befunde").check();
      await page.locator("summary").first().click();
      await page.locator(".choice label").nth(2).click();
      await page.keyboard.press("Escape");
      await page.getByRole("button", { name: "Kopieren" }).first().click();
      await page.getByText("Kopierte Zeilen: 3").waitFor();
      const lines = (await clipboardOf(page)).split("\n").map((line) => line.split("\t"));
      assert.deepEqual(lines.map((fields) => [fields[0], fields[1], fields[2]]), [
        ["Element", lines[0][1], lines[0][2]],
        ["Bolt 10", "-32.5", "100"], ["Bolt 1", "29", "50"], ["Bolt 3", "nan", ""], ["", undefined, undefined],
      ]);
      assert.equal(lines[0].length, 4);
      assert.match(lines[0][1], / \[N\]$/);
    }, { locale: "de-DE", permissions: ["clipboard-read", "clipboard-write"] });
  });
}

test("shows names as what they are, whatever they hold", async () => {
  const names = [
    "<b>bold</b> & \"double\" 'single'", "</script><script>alert(1)</script>", "]]>", "שלום 12", "=1+2",
    "tab\there",
  ];
  const results = resultsOf({
    name: names[1],
    tools: [...names, "nul\u0000here"].map((name) => toolOf(name, "bolt", { ClampNormalForce: { values: [0, 31] } })),
  });
  await onPage(reportOfResults(results, { args: ["--family", "Bolts"] }), async (page) => {
    const shown = await namesOf(page);
    assert.deepEqual(shown.slice(0, 5), names.slice(0, 5));
    assert.deepEqual(shown.slice(5), ["tab␉here", "nul␀here"]);
    assert.equal(await textOf(page, "section.unit h2"), names[1]);
    await page.getByRole("searchbox").fill("</SCRIPT>");
    assert.deepEqual(await namesOf(page), [names[1]]);
    await cell(page, "31").click();
    await page.getByRole("dialog", { name: `${names[1]}, Max Normal Force` }).waitFor();
    assert.equal(await page.locator("b").count(), 0);
    // A name from right to left does not turn the row round: its cell stays the first.
    await page.keyboard.press("Escape");
    await page.getByRole("searchbox").fill("שלום");
    const boxes = await Promise.all(["tbody th", "tbody td"].map((kind) => page.locator(kind).filter({ visible: true })
      .first().boundingBox()));
    assert.ok(boxes[0].x < boxes[1].x);
  });
});

test("shows everything without a script", async () => {
  await onPage(reportOfBolts(), async (page) => {
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 2", "Bolt 1", "Bolt 3", "bolt 4"]);
    assert.equal(await page.getByRole("button").count(), 0);
    assert.equal(await page.getByText("-32.5", { exact: false }).first().isVisible(), true);
  }, { javaScriptEnabled: false });
});

test("shows everything where its script does not run to its end", async () => {
  const path = reportOfBolts();
  writeFileSync(path, readFileSync(path, "utf8").replace('"use strict";', '"use sloppy";'));
  await onPage(path, async (page) => {
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 2", "Bolt 1", "Bolt 3", "bolt 4"]);
  }, {}, [/Content Security Policy/]);
});

test("speaks the reader's language and writes numbers its way", async () => {
  await onPage(reportOfBolts("de_DE.UTF-8"), async (page) => {
    assert.equal(await page.evaluate(() => document.documentElement.lang), "de");
    assert.equal(await textOf(page, "#summary h2"), "Zusammenfassung");
    assert.equal(await cell(page, "12,25").count(), 1);
    await cell(page, "12,25").click();
    await page.getByRole("dialog").waitFor();
    assert.equal(await textOf(page, "dialog dd >> nth=0"), "12,25 N");
    assert.equal(await page.locator("section.table tbody tr").nth(1).getAttribute("data-v"), "12.25 -990 - -");
  }, { locale: "de-DE" });
  await onPage(reportOfBolts("ja_JP.UTF-8"), async (page) => {
    assert.equal(await page.evaluate(() => document.documentElement.lang), "ja");
    assert.equal(await textOf(page, "#summary h2"), "概要");
    await page.getByLabel("指摘のある行のみ").check();
    assert.deepEqual(await namesOf(page), ["Bolt 10", "Bolt 1", "Bolt 3"]);
  }, { locale: "ja-JP" });
});

for (const colorScheme of ["light", "dark"]) {
  test(`puts no barrier in anybody's way in ${colorScheme} colours`, async () => {
    await onPage(reportOfBolts(), async (page) => {
      assert.deepEqual(await barriersOn(page), []);
      await header(page, "Max Normal Force").click();
      await page.locator("summary").first().click();
      await cell(page, "12.25").focus();
      assert.deepEqual(await barriersOn(page), []);
      await page.keyboard.press("Escape");
      await cell(page, "-32.5").click();
      await page.getByRole("dialog").waitFor();
      assert.deepEqual(await barriersOn(page), []);
    }, { colorScheme });
  });
}
