// What a person does with the report of `diff`.

import assert from "node:assert/strict";
import { test } from "node:test";

import { barriersOn, namesOf, onPage, reportOfDifferences, resultsOf, textsOf, toolOf } from "./support.mjs";

const boltsOf = (forces) => resultsOf({
  tools: Object.entries(forces).map(([name, force]) => toolOf(name, "bolt", { ClampNormalForce: { values: [0, force] } })),
});
const report = () => reportOfDifferences(
  boltsOf({ "Bolt 1": 20, "Bolt 2": 45.125, "Bolt 3": 5, "Bolt 10": 8, "Bolt 11": 8 }),
  boltsOf({ "Bolt 1": 31, "Bolt 2": 1, "Bolt 3": 5.5, "Bolt 10": 7, "Bolt 11": 8 }));
const header = (page, name) => page.getByRole("button", { name, exact: true });

test("shows before, after and change, and sorts by them", async () => {
  await onPage(report(), async (page) => {
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2", "Bolt 3", "Bolt 10"]);
    assert.deepEqual((await textsOf(page, "section.table tbody tr:first-child > *")).slice(0, 6),
      ["Bolt 1", "Max Normal Force [N]", "20", "31", "+11", "+55 %"]);
    await header(page, "Change").click();
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 3", "Bolt 10", "Bolt 2"]);
    await page.getByLabel("Sort numbers by magnitude").check();
    assert.deepEqual(await namesOf(page), ["Bolt 2", "Bolt 1", "Bolt 10", "Bolt 3"]);
    await header(page, "Relative change").click();
    assert.deepEqual(await namesOf(page), ["Bolt 2", "Bolt 1", "Bolt 10", "Bolt 3"]);
  });
});

test("points out with arrows which values crossed their limits, and shows these alone", async () => {
  await onPage(report(), async (page) => {
    await page.getByLabel("Only findings").check();
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2"]);
    const arrows = await page.locator("td.up abbr, td.down abbr").evaluateAll(
      (marks) => marks.map((mark) => `${mark.textContent} ${mark.title}`));
    assert.deepEqual(arrows, ["↑ now beyond its limit", "↓ back within its limit"]);
  });
});

test("puts no barrier in anybody's way", async () => {
  for (const colorScheme of ["light", "dark"]) {
    await onPage(report(), async (page) => assert.deepEqual(await barriersOn(page), []), { colorScheme });
  }
});
