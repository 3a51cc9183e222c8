// Tables of which only the rows that can be seen are in the page.

import assert from "node:assert/strict";
import { test } from "node:test";

import { namesOf, onPage, reportOfResults, resultsOf, textOf, toolOf } from "./support.mjs";

/**
 * Bolts with four forces each, in an order that is none of their names or values. The place in the order of names tells
 * all: every 100th but the first is beyond its limit of 30 N.
 */
function bolts(count) {
  const tools = [];
  for (let i = 0; i < count; ++i) {
    const place = (i * 7919) % count;
    const force = (factor) => ({ values: [0, ((place * factor) % 4999) / 10, -((place * factor) % 777)] });
    tools.push(toolOf(`Bolt ${place + 1}`, "bolt", {
      ClampNormalForce: { values: [0, place % 100 === 0 ? -(30 + place / 1000) : (place % 29) + 0.25] },
      ClampClosingForce: force(31), ClampSupportingForce: force(17), ClampTangentialForce: force(7),
    }));
  }
  return resultsOf({ tools });
}

const reportOf = (count) => reportOfResults(bolts(count), { args: ["--family", "Bolts"] });
const rowsInPage = (page) => page.locator("section.table:first-of-type tr[aria-rowindex]").count();

test("has few rows in the page, whichever are looked at, and tells of all", async () => {
  await onPage(reportOf(1000), async (page) => {
    assert.equal(await page.getByRole("grid").first().getAttribute("aria-rowcount"), "1001");
    assert.ok(await rowsInPage(page) < 100);
    await page.locator(".scroller").first().evaluate((scroller) => { scroller.scrollTop = scroller.scrollHeight; });
    await page.locator("tr[aria-rowindex='1001']").first().waitFor();
    assert.ok(await rowsInPage(page) < 100);
    assert.equal((await namesOf(page)).pop(), "Bolt 82");
    await page.locator("th[data-type=name] button").first().click();
    assert.equal(await page.locator(".scroller").first().evaluate((scroller) => scroller.scrollTop), 0);
  });
});

test("shows rows wherever there is room for them, from the beginning", async () => {
  await onPage(reportOf(1000), async (page) => {
    await page.locator(".scroller").first().scrollIntoViewIfNeeded();
    const isFilled = await page.locator(".scroller").first().evaluate((scroller) => {
      const rows = Array.from(scroller.querySelectorAll("tr[aria-rowindex]"));
      return rows[rows.length - 1].getBoundingClientRect().bottom >= scroller.getBoundingClientRect().bottom;
    });
    assert.ok(isFilled);
  }, { viewport: { width: 1000, height: 1600 } });
});

test("keeps its columns as wide as their longest texts, which are far below", async () => {
  const results = bolts(1000);
  const name = "A bolt with a name that is longer than all the others";
  results.units[0].tools[990] = toolOf(name, "bolt", { ClampNormalForce: { values: [0, 1] } });
  await onPage(reportOfResults(results, { args: ["--family", "Bolts"] }), async (page) => {
    const { width } = await page.getByRole("grid").first().boundingBox();
    await page.locator(".scroller").first().evaluate((scroller) => { scroller.scrollTop = scroller.scrollHeight; });
    await page.getByRole("rowheader", { name }).first().waitFor();
    assert.equal((await page.getByRole("grid").first().boundingBox()).width, width);
  });
});

test("keeps the focus while its row is scrolled out of sight, sorted and filtered", async () => {
  await onPage(reportOf(1000), async (page) => {
    const focused = () => page.evaluate(() => document.activeElement.parentNode.cells[0].textContent);
    await page.locator("section.table tbody th").filter({ visible: true }).first().click();
    await page.keyboard.press("Control+End");
    assert.equal(await focused(), "Bolt 82");
    await page.keyboard.press("PageUp");
    const head = await page.locator(".data thead").first().boundingBox();
    assert.ok((await page.locator(":focus").boundingBox()).y + 1 > head.y + head.height);
    await page.keyboard.press("PageDown");
    assert.equal(await focused(), "Bolt 82");
    await page.locator(".scroller").first().evaluate((scroller) => { scroller.scrollTop = 0; });
    await page.locator("tr[aria-rowindex='2']").first().waitFor();
    assert.equal(await focused(), "Bolt 82");
    assert.equal(await page.locator(":focus").count(), 1);
    await page.keyboard.press("ArrowUp");
    assert.equal(await focused(), "Bolt 163");
  });
});

test("keeps the focus clear of the head and of the names of elements", async () => {
  await onPage(reportOf(150), async (page) => {
    await page.locator("thead button").first().focus();
    await page.keyboard.press("Control+End");
    for (const key of ["PageUp", "PageUp", "ArrowLeft", "ArrowLeft", "ArrowLeft"]) await page.keyboard.press(key);
    const focused = await page.locator(":focus").boundingBox();
    const corner = await page.locator(".data thead th").first().boundingBox();
    // The browser scrolls by whole pixels.
    assert.ok(focused.x + 1 > corner.x + corner.width && focused.y + 1 > corner.y + corner.height);
  }, { viewport: { width: 500, height: 700 } });
});

test("leaves as much room for rows as they take when letters have grown", async () => {
  await onPage(reportOf(1000), async (page) => {
    await page.evaluate(() => { document.documentElement.style.fontSize = "32px"; });
    await page.setViewportSize({ width: 900, height: 600 });
    await page.waitForFunction(() => {
      const body = document.querySelector("section.table tbody");
      const row = body.querySelector("[aria-rowindex]").getBoundingClientRect().height;
      return Math.abs(body.getBoundingClientRect().height - 1000 * row) < row;
    });
  });
});

test("leads to a value far below", async () => {
  await onPage(reportOf(1000), async (page) => {
    const link = page.locator(".worst a").first();
    assert.match(await link.textContent(), /Bolt 901, Max Normal Force$/);
    await link.click();
    await page.locator("td:focus").waitFor();
    assert.equal(await page.evaluate(() => document.activeElement.parentNode.cells[0].textContent), "Bolt 901");
    const cell = await page.locator(":focus").boundingBox();
    const scroller = await page.locator(".scroller").first().boundingBox();
    assert.ok(cell.y > scroller.y && cell.y + cell.height <= scroller.y + scroller.height);
  });
});

test("has all rows in the page while it is printed, in their order", async () => {
  await onPage(reportOf(1000), async (page) => {
    await page.locator("thead button").first().click();
    await page.evaluate(() => window.addEventListener("beforeprint", () => {
      const rows = document.querySelectorAll("section.table:first-of-type tr[aria-rowindex]");
      window.printed = Array.from(rows, (row) => row.cells[0].textContent);
    }));
    const pdf = await page.pdf();
    assert.ok(pdf.length > 100000);
    const printed = await page.evaluate(() => window.printed);
    assert.equal(printed.length, 1000);
    assert.deepEqual(printed.slice(0, 3), ["Bolt 1", "Bolt 2", "Bolt 3"]);
    assert.equal(printed[999], "Bolt 1000");
    assert.ok(await rowsInPage(page) < 100);
  });
});

test("opens, sorts and filters 20,000 rows of four values", async (context) => {
  const path = reportOf(20000);
  const begin = Date.now();
  await onPage(path, async (page) => {
    await page.evaluate(() => new Promise((painted) => { requestAnimationFrame(() => setTimeout(painted)); }));
    context.diagnostic(`opened in ${Date.now() - begin} ms`);
    // The time until what has changed is on the screen.
    const timed = async (what, change) => {
      const milliseconds = await page.evaluate(async (changing) => {
        const before = performance.now();
        const target = document.querySelector(changing.selector);
        if (changing.value !== undefined) {
          target.value = changing.value;
          target.dispatchEvent(new Event("input"));
        } else {
          target.click();
        }
        await new Promise((painted) => { requestAnimationFrame(() => setTimeout(painted)); });
        return performance.now() - before;
      }, change);
      context.diagnostic(`${what} in ${Math.round(milliseconds)} ms`);
    };
    await timed("sorted by number", { selector: "th[data-type=number] button" });
    assert.equal((await namesOf(page))[0], "Bolt 16356");
    await timed("sorted by name", { selector: "th[data-type=name] button" });
    assert.equal((await namesOf(page))[0], "Bolt 1");
    await timed("sorted by utilisation", { selector: "[aria-pressed]" });
    assert.equal((await namesOf(page))[0], "Bolt 19901");
    await timed("filtered", { selector: "input[type=search]", value: "bolt 1999" });
    assert.equal(await textOf(page, "[role=status]"), "22 of 40,000 rows");
    await timed("all again", { selector: "input[type=search]", value: "" });
    await timed("only findings", { selector: ".tools input[type=checkbox]" });
    assert.equal(await textOf(page, "[role=status]"), "199 of 40,000 rows");
  });
});
