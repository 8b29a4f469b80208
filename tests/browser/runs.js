// Runs the program on codebooks and opens its reports in the browser.

import { execFileSync, spawnSync } from "node:child_process";
import { cpSync, mkdtempSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const PROJECT = fileURLToPath(new URL("../..", import.meta.url));
const PROGRAM = process.env.APPLYDIC ?? join(PROJECT, "build/release/bin/applydic");

/** A folder with the example codebooks; the caller removes it. */
export function makeFolder() {
  const folder = mkdtempSync(join(tmpdir(), "report-"));
  cpSync(join(PROJECT, "examples"), folder, { recursive: true });
  return folder;
}

/** Runs `applydic apply` in a folder with a report, and returns the address of that. */
export function reportOf(folder, ...options) {
  const { stderr, status } = spawnSync(
    PROGRAM,
    ["apply", "--quiet", "--report", "report.html", ...options],
    { cwd: folder, encoding: "utf8" },
  );
  if (status !== 0 && status !== 1) throw new Error(`applydic failed: ${stderr}`);
  return pathToFileURL(join(folder, "report.html")).href;
}

/** Writes a codebook of variables, each the text of what stands in its element. */
export function writeCodebook(folder, name, variables) {
  const elements = variables.map(
    (content, i) => `<var name="V${String(i + 1).padStart(5, "0")}">${content}</var>`,
  );
  writeFileSync(
    join(folder, name),
    `<codeBook xmlns="ddi:codebook:2_5"><fileDscr/><dataDscr>\n${elements.join("\n")}\n` +
      "</dataDscr></codeBook>\n",
  );
}

export function launch() {
  return chromium.launch({
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    args: [
      "--no-sandbox",
      "--disable-gpu",
      "--disable-quic",
      "--no-first-run",
      "--disable-background-networking",
      "--disable-component-update",
      "--disable-sync",
    ],
  });
}

/**
 * Opens a report in a window of its own. What goes wrong in it, and each address besides its own
 * that it asks for, is added to page.faults.
 */
export async function open(browser, address, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1400, height: 900 }, ...options });
  const page = await context.newPage();
  page.faults = [];
  page.on("pageerror", (error) => page.faults.push(error.message));
  page.on("console", (message) => page.faults.push(message.text()));
  page.on("request", (request) => {
    if (request.url().split("#")[0] !== address.split("#")[0]) page.faults.push(request.url());
  });
  await page.goto(address);
  await page.waitForSelector("#origin time");
  return page;
}

/** The text of a page as it is printed, cell by cell and without blanks: their widths depend on the fonts. */
export async function printed(page) {
  const pdf = await page.pdf({ format: "A4" });
  const text = execFileSync("pdftotext", ["-raw", "-", "-"], { input: pdf, encoding: "utf8" });
  return text.replace(/\s+/g, "");
}
