// Makes a picture of the page that scripts/web has built: page_picture.js OUTPUT [WIDTH [light|dark]]

import process from "node:process";

import { launch } from "./runs.js";

const [output, width = "1280", colorScheme = "light"] = process.argv.slice(2);
const browser = await launch();
try {
  const page = await browser.newPage({ viewport: { width: Number(width), height: 1000 }, colorScheme });
  await page.goto(new URL("../../build/web/applydic.html", import.meta.url).href);
  await page.waitForSelector("html[data-ready]");
  await page.click("#example");
  await page.evaluate(() => document.activeElement.blur());
  await page.evaluate(() => scrollTo(0, 0));
  await page.screenshot({ path: output });
} finally {
  await browser.close();
}
