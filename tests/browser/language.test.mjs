// The report in a language whose texts are longer than those of any other: nothing is cut, and nothing lies on another.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { after, test } from "node:test";
import { fileURLToPath } from "node:url";

import { limitsOf, onPage, reportOf, reportOfDifferences, reportOfResults, reportOfStudy, resultsOf, toolOf } from "./support.mjs";

const tests = dirname(dirname(fileURLToPath(import.meta.url)));
const folder = mkdtempSync(join(tmpdir(), "language-"));
after(() => rmSync(folder, { recursive: true }));
execFileSync("python3", ["-B", join(tests, "support/pseudo_locale.py"), join(tests, "../translations/de.po"), folder]);
process.env.KESTREL_LOCALEDIR = folder;
const language = "xx_XX.UTF-8";

const bolts = (force) => resultsOf({ tools: [
  toolOf("Bolt 1", "bolt", { ClampNormalForce: { pairs: [[0, 0.1], [force, 0.2]] }, ClampClosingForce: { values: [0, 100, null] } }),
  toolOf("Bolt 2", "bolt", { ClampNormalForce: { values: [0, 12.25] } }),
] });
const limits = limitsOf({ limits: { BoltNormalForce: 30 } });
const reports = {
  "of tables": () => reportOfResults(bolts(-32.5), { language, limits, args: ["--curves", "all"] }),
  "of the sample": () => reportOf(["demo"], language),
  "of differences": () => reportOfDifferences(bolts(3), bolts(45), language),
  "of a study": () => reportOfStudy({ first: bolts(20), second: bolts(45) }, [], language),
};
const widths = [1280, 800, 420];

/** What of the page, or of a part of it, is cut or lies on something else, as lines. */
function troubles(selector) {
  const found = [];
  const page = document.documentElement;
  const root = document.querySelector(selector);
  // Places are known of what was drawn alone, which what is far from the window is not.
  for (const element of document.querySelectorAll("*"))
    if (getComputedStyle(element).contentVisibility === "auto") element.style.contentVisibility = "visible";
  const isSeen = (element) => element.checkVisibility({ checkOpacity: true, checkVisibilityCSS: true });
  const said = (element) => `${element.tagName} "${element.textContent.trim().slice(0, 60)}"`;
  // What a table scrolls out of sight lies on nothing.
  const seenBox = (part) => {
    const { left, right, top, bottom } = part.getBoundingClientRect();
    const room = part.closest(".scroller")?.getBoundingClientRect() ?? { left, right };
    return { left: Math.max(left, room.left), right: Math.min(right, room.right), top, bottom };
  };
  if (page.scrollWidth > page.clientWidth) found.push(`the page is ${page.scrollWidth} wide, of ${page.clientWidth}`);
  for (const element of root.querySelectorAll("h1, h2, h3, h4, p, button, label, summary, th, td, dt, dd, a, li")) {
    if (!isSeen(element) || element.closest(".scroller, svg")) continue;
    if (element.scrollWidth > element.clientWidth + 1 && element.clientWidth > 0 && getComputedStyle(element).display !== "inline")
      found.push(`${said(element)} is ${element.scrollWidth} wide, of ${element.clientWidth}`);
  }
  const parts = [...root.querySelectorAll("input, button, h1, h2, h3, h4, p, summary, label, svg")].filter(isSeen);
  const boxes = parts.map((part) => [part, seenBox(part)]).filter(([, box]) => box.right > box.left);
  const isSticky = (part) => part.closest("thead, .tools");
  boxes.forEach(([one, box], index) => boxes.slice(index + 1).forEach(([other, its]) => {
    if (one.contains(other) || other.contains(one) || Boolean(isSticky(one)) !== Boolean(isSticky(other))) return;
    const width = Math.min(box.right, its.right) - Math.max(box.left, its.left);
    const height = Math.min(box.bottom, its.bottom) - Math.max(box.top, its.top);
    if (width > 1 && height > 1) found.push(`${said(one)} lies on ${said(other)}`);
  }));
  return found;
}

/** Texts of pictures that leave their picture or lie on one another. */
function troublesOfPictures() {
  const found = [];
  for (const picture of document.querySelectorAll("svg")) {
    const room = picture.getBoundingClientRect();
    if (room.width === 0) continue;
    const texts = [...picture.querySelectorAll("text")].map((text) => [text.textContent, text.getBoundingClientRect()]);
    texts.forEach(([text, box], index) => {
      if (box.left < room.left - 1 || box.right > room.right + 1) found.push(`"${text}" leaves the picture`);
      for (const [other, its] of texts.slice(index + 1)) {
        const width = Math.min(box.right, its.right) - Math.max(box.left, its.left);
        const height = Math.min(box.bottom, its.bottom) - Math.max(box.top, its.top);
        if (width > 1 && height > 3) found.push(`"${text}" lies on "${other}"`);
      }
    });
  }
  return found;
}

for (const [name, report] of Object.entries(reports)) {
  test(`leaves a report ${name} whole`, async () => {
    const path = report();
    for (const width of widths) {
      await onPage(path, async (page) => {
        assert.equal(await page.locator("html").getAttribute("lang"), "en-XA");
        assert.deepEqual(await page.evaluate(troubles, "body"), [], `${width} pixels wide`);
        assert.deepEqual(await page.evaluate(troublesOfPictures), [], `${width} pixels wide`);
      }, { viewport: { width, height: 900 } });
    }
  });
}

test("leaves a curve whole", async () => {
  await onPage(reports["of tables"](), async (page) => {
    await page.getByRole("gridcell").filter({ hasText: "-32,5" }).first().click();
    await page.getByRole("dialog").waitFor();
    assert.deepEqual(await page.evaluate(troublesOfPictures), []);
    assert.deepEqual(await page.evaluate(troubles, "dialog"), []);
  });
});
