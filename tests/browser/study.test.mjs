// What a person does with the report of `study export`.

import assert from "node:assert/strict";
import { test } from "node:test";

import { barriersOn, onPage, reportOfStudy, resultsOf, textsOf, toolOf } from "./support.mjs";

const boltsOf = (forces) => resultsOf({
  tools: Object.entries(forces).map(([name, force]) => toolOf(name, "bolt", { ClampNormalForce: { values: [force] } })),
});
const report = () => reportOfStudy({
  first: boltsOf({ "Bolt 1": 20, "Bolt 2": 3 }),
  second: boltsOf({ "Bolt 1": 45, "Bolt 2": 4 }),
  third: boltsOf({ "Bolt 1": 25, "Bolt 3": null }),
});
const namesIn = (page, table) => textsOf(page, `#${table} tbody th`);

test("lists the runs, which sort, and those with findings alone", async () => {
  await onPage(report(), async (page) => {
    assert.deepEqual(await namesIn(page, "t0"), ["first", "second", "third"]);
    await page.locator("#t0").getByRole("button", { name: "Highest utilisation" }).click();
    assert.deepEqual(await namesIn(page, "t0"), ["second", "third", "first"]);
    await page.getByLabel("Only findings").check();
    assert.deepEqual(await namesIn(page, "t0"), ["second", "third"]);
    assert.deepEqual((await namesIn(page, "t1")).sort(), ["Bolt 1", "Bolt 3"]);
  });
});

test("leads from a high utilisation to its statistics", async () => {
  await onPage(report(), async (page) => {
    assert.deepEqual(await textsOf(page, ".worst a"), [
      "second: OP20, Bolts, Forces, Bolt 1, Max Normal Force", "second: OP20, Bolts, Forces, Bolt 2, Max Normal Force",
    ]);
    await page.locator(".worst a").first().click();
    const focused = page.locator("td:focus");
    assert.equal(await focused.textContent(), "150 %");
    assert.deepEqual(await textsOf(page, "tr:has(td:focus) > *"),
      ["Bolt 1", "OP20", "Bolts", "Forces", "Max Normal Force [N]", "30", "150 %", "33.33 %", "3", "20", "45", "30",
        "13.22876"]);
  });
});

test("draws each value through the runs as large as there is room for", async () => {
  await onPage(report(), async (page) => {
    const pictures = page.getByRole("img");
    assert.equal(await pictures.count(), 2);
    assert.equal(await pictures.first().getAttribute("aria-label"), "runs: 3, minimum 20 N, "
      + "maximum 45 N, mean 30 N, standard deviation 13.22876 N, beyond the limit 33.3 %, limit 30 N");
    const { width, height } = await pictures.first().boundingBox();
    assert.ok(width > 250 && height > 90, `${width} x ${height}`);
    const colour = (selector) => page.locator(selector).first().evaluate((mark) => getComputedStyle(mark).stroke);
    assert.notEqual(await colour("svg .beyond"), await colour("svg .dots"));
  });
});

test("puts no barrier in anybody's way", async () => {
  for (const colorScheme of ["light", "dark"]) {
    await onPage(report(), async (page) => assert.deepEqual(await barriersOn(page), []), { colorScheme });
  }
});
