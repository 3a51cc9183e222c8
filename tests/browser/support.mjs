// What the tests of the report share: a browser, and pages that the program writes.

import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after } from "node:test";
import { pathToFileURL } from "node:url";

const { KESTREL_PROGRAM: program, KESTREL_BROWSER: executablePath, KESTREL_BROWSER_PACKAGES: packages } = process.env;
const require = createRequire(join(packages, "package.json"));
const { chromium } = require("playwright-core");
const axe = readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");

// Nothing may leave the machine, and the browser's own services would try to.
const browser = await chromium.launch({
  executablePath,
  args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync", "--host-resolver-rules=MAP * ~NOTFOUND"],
});
const folder = mkdtempSync(join(tmpdir(), "report-"));
after(async () => {
  await browser.close();
  rmSync(folder, { recursive: true });
});

/** A results file with one unit. */
export function resultsOf(unit) {
  return {
    format: "simulation-results", version: 1,
    units: [{ id: "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", name: "OP20", ...unit }],
  };
}

/** A tool of a kind with series by quantity. */
export function toolOf(id, kind, series) {
  return { id, kind, series: Object.entries(series).map(([quantity, values]) => ({ quantity, ...values })) };
}

/** A text of limits that holds for all units. */
export function limitsOf(all) {
  return { format: "limits", version: 1, all };
}

function write(name, content) {
  const path = join(folder, name);
  writeFileSync(path, JSON.stringify(content));
  return path;
}

/** The path of the report that `result-tables` writes with these arguments, in a language. */
export function reportOf(args, language = "C") {
  const path = join(folder, "report.html");
  const { status, stderr } = spawnSync(program, [...args, "--format", "html", "--output", path],
    { env: { ...process.env, LANG: language, LC_ALL: "", LANGUAGE: "" }, encoding: "utf8" });
  // 1 says that something was found.
  assert.ok(status === 0 || status === 1, stderr);
  return path;
}

export function reportOfResults(results, { language, limits, args = [] } = {}) {
  const named = limits ? ["--limits", write("limits.json", limits)] : [];
  return reportOf(["show", write("results.json", results), ...named, ...args], language);
}

export function reportOfDifferences(earlier, later, language) {
  return reportOf(["diff", write("before.json", earlier), write("after.json", later)], language);
}

/** The report of a study with these runs, by name, in their order. */
export function reportOfStudy(runs, args = [], language = "C") {
  const study = join(folder, "study.db");
  rmSync(study, { force: true });
  for (const [name, results] of Object.entries(runs)) {
    const { status, stderr } = spawnSync(
      program, ["study", "add", study, write("run.json", results), "--run", name], { encoding: "utf8" });
    assert.equal(status, 0, stderr);
  }
  return reportOf(["study", "export", study, ...args], language);
}

/**
 * Opens a page, lets `look` look at it, and asserts that the page asks for nothing but itself, and that the browser
 * complains of nothing but what is expected. `context` are options of the browser's context.
 */
export async function onPage(path, look, context = {}, expectedProblems = []) {
  const surroundings = await browser.newContext({
    viewport: { width: 1000, height: 700 }, offline: true, reducedMotion: "reduce", ...context,
  });
  const page = await surroundings.newPage();
  const problems = [];
  const requests = [];
  page.on("console", (message) => problems.push(`${message.type()}: ${message.text()}`));
  page.on("pageerror", (error) => problems.push(error.stack));
  page.on("request", (request) => requests.push(request.url()));
  const address = pathToFileURL(path).href;
  await page.goto(address);
  await look(page);
  await surroundings.close();
  assert.equal(problems.length, expectedProblems.length, problems.join("\n"));
  expectedProblems.forEach((expected, index) => assert.match(problems[index], expected));
  assert.deepEqual(requests, [address]);
}

/** The texts of the elements that a selector finds and that can be seen, without the marks in them. */
export function textsOf(page, selector) {
  return page.locator(selector).filter({ visible: true }).evaluateAll((elements) => elements.map((element) => {
    const copy = element.cloneNode(true);
    for (const mark of copy.querySelectorAll("abbr")) mark.remove();
    return copy.textContent.trim();
  }));
}

/** The names of the elements in the first table, as its rows stand. */
export function namesOf(page) {
  return textsOf(page, "section.table:first-of-type tbody th");
}

export function textOf(page, selector) {
  return page.locator(selector).textContent();
}

/** What a person would paste. */
export async function clipboardOf(page) {
  const input = page.getByRole("searchbox");
  await page.evaluate(() => document.body.append(document.createElement("textarea")));
  await page.locator("body > textarea").focus();
  await page.keyboard.press("Control+V");
  const text = await page.locator("body > textarea").inputValue();
  await page.evaluate(() => document.querySelector("body > textarea").remove());
  await input.focus();
  return text;
}

/** What axe finds, as lines. */
export async function barriersOn(page) {
  await page.evaluate(axe);
  const { violations } = await page.evaluate(() => window.axe.run());
  return violations.map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.html).join(" ")}`);
}
