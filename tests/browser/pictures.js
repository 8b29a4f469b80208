// Makes a picture of a report: pictures.js OUTPUT [WIDTH [light|dark]]

import { rmSync } from "node:fs";
import process from "node:process";

import { launch, makeFolder, open, reportOf } from "./runs.js";

const [output, width = "1200", colorScheme = "light"] = process.argv.slice(2);
const folder = makeFolder();
const browser = await launch();
try {
  const address = reportOf(folder, "-f", "relabel.txt", "-n", "survey_2026.xml");
  const page = await open(browser, `${address}#properties=valueLabels`, {
    viewport: { width: Number(width), height: 860 },
    colorScheme,
  });
  await page.getByRole("button", { name: "EDUC" }).first().click();
  await page.locator("#changed h2").evaluate((heading) => heading.scrollIntoView());
  await page.evaluate(() => document.activeElement.blur());
  await page.screenshot({ path: output });
} finally {
  await browser.close();
  rmSync(folder, { recursive: true });
}
