// What a person does with the report of `diff`: see what crossed a limit, filter, sort, copy.

import assert from "node:assert/strict";
import { test } from "node:test";

import {
  barriersOn, clipboardOf, namesOf, onPage, reportOfDifferences, resultsOf, textOf, textsOf, toolOf,
} from "./support.mjs";

const boltsOf = (forces) => resultsOf({
  tools: Object.entries(forces).map(([id, values]) => toolOf(id, "bolt", { ClampNormalForce: { values } })),
});
// The limit of bolts is 30 N.
const before = boltsOf({ "Bolt 1": [20], "Bolt 2": [45.5], "Bolt 3": [1], "Bolt <4>": [null] });
const after = boltsOf({ "Bolt 1": [-31], "Bolt 2": [2.25], "Bolt 3": [1.5], "Bolt <4>": [5] });

test("shows the differences with arrows where a limit was crossed", async () => {
  await onPage(reportOfDifferences(before, after), async (page) => {
    assert.equal(await textOf(page, ".verdict"), "The files differ");
    assert.deepEqual(await textsOf(page, ".data tbody tr:first-child > *"),
      ["Bolt 1", "Max Normal Force [N]", "20", "-31", "-51", "-255 %", "now beyond its limit"]);
    assert.deepEqual(await page.locator("tbody abbr").allTextContents(), ["↑", "!", "↓", "*"]);
    assert.deepEqual(await barriersOn(page), []);
  });
});

test("leaves values that crossed a limit where only findings are wanted", async () => {
  await onPage(reportOfDifferences(before, after), async (page) => {
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2", "Bolt 3", "Bolt <4>"]);
    await page.getByLabel("Only findings").check();
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2"]);
  });
});

test("filters by what became of a value", async () => {
  await onPage(reportOfDifferences(before, after), async (page) => {
    await page.getByRole("searchbox").fill("back within");
    assert.deepEqual(await namesOf(page), ["Bolt 2"]);
  });
});

test("sorts by the change, those without one last", async () => {
  await onPage(reportOfDifferences(before, after), async (page) => {
    const change = page.getByRole("button", { name: "Change", exact: true });
    await change.click();
    assert.deepEqual(await namesOf(page), ["Bolt 3", "Bolt 2", "Bolt 1", "Bolt <4>"]);
    await change.click();
    assert.deepEqual(await namesOf(page), ["Bolt 1", "Bolt 2", "Bolt 3", "Bolt <4>"]);
  });
});

test("copies plain numbers", async () => {
  await onPage(reportOfDifferences(before, after, "de_DE.UTF-8"), async (page) => {
    assert.deepEqual((await textsOf(page, "section.table td:nth-child(4)")).slice(0, 2), ["-31", "2,25"]);
    await page.getByRole("button", { name: "Kopieren" }).click();
    assert.equal((await clipboardOf(page)).split("\n")[2],
      "Bolt 2\tMax. Normalkraft [N]\t45.5\t2.25\t-43.25\t-0.9505494505494505\twieder innerhalb der Grenze");
  });
});
