// Makes the picture of a report that the README shows: tests/browser/picture.mjs OUT.png

import { test } from "node:test";

import { onPage, reportOf } from "./support.mjs";

test("makes the picture", async () => {
  await onPage(reportOf(["demo", "--unit", "OP30 Joining"]), async (page) => {
    await page.locator("td.x").first().hover();
    await page.getByRole("tooltip").waitFor();
    await page.screenshot({ path: process.argv[2] });
  }, { viewport: { width: 1240, height: 1160 } });
});
