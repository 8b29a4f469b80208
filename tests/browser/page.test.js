// The page that does the work in the browser, in both forms: scripts/web builds them and runs this.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createServer } from "node:http";
import { tmpdir } from "node:os";
import { basename, join, resolve } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";

import axe from "axe-core";

import { launch, writeCodebook } from "./runs.js";

const PROJECT = fileURLToPath(new URL("../..", import.meta.url));
const BUILD = resolve(process.env.APPLYDIC_WEB ?? join(PROJECT, "build/web"));
const PROGRAM = resolve(process.env.APPLYDIC ?? join(PROJECT, "build/release/bin/applydic"));
const FILE = pathToFileURL(join(BUILD, "applydic.html")).href;
const EXAMPLES = join(PROJECT, "examples");
const OLD = join(EXAMPLES, "survey_2025.xml");
const NEW = join(EXAMPLES, "survey_2026.xml");

let browser;
let folder;

before(async () => {
  browser = await launch();
  folder = mkdtempSync(join(tmpdir(), "page-"));
});
after(async () => {
  await browser.close();
  rmSync(folder, { recursive: true });
});

/** Opens the page. What goes wrong, and each address that it asks for, is kept. */
async function open(address = FILE, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
  const page = await context.newPage();
  page.faults = [];
  page.asked = [];
  page.on("pageerror", (error) => page.faults.push(error.message));
  page.on("console", (message) => page.faults.push(message.text()));
  page.on("dialog", (dialog) => page.faults.push(dialog.message()));
  page.on("request", (request) => page.asked.push(request.url()));
  await page.goto(address);
  await page.waitForSelector("html[data-ready]");
  return page;
}

/** Drops files on a place, as a person does. */
async function drop(page, id, ...paths) {
  const files = paths.map((path) => [basename(path), readFileSync(path).toString("base64")]);
  const data = await page.evaluateHandle((all) => {
    const transfer = new DataTransfer();
    for (const [name, text] of all) {
      transfer.items.add(new File([Uint8Array.from(atob(text), (c) => c.charCodeAt(0))], name));
    }
    return transfer;
  }, files);
  await page.locator(".drop", { has: page.locator(`#${id}`) }).dispatchEvent("drop", { dataTransfer: data });
}

async function run(page) {
  await page.click("#go");
  await page.waitForSelector(".outcome-part:not([hidden])", { timeout: 60_000 });
}

/** What a button gives to be kept. */
async function downloaded(page, name) {
  const waiting = page.waitForEvent("download");
  await page.getByRole("button", { name }).click();
  return readFileSync(await (await waiting).path());
}

/** What the native program writes for these commands. */
function native(commands, working, where = EXAMPLES) {
  const output = join(folder, "native.xml");
  const syntax = join(folder, "native.txt");
  writeFileSync(syntax, commands);
  execFileSync(PROGRAM, ["apply", "-q", "-f", syntax, "-o", output, working], { cwd: where, stdio: "pipe" });
  return readFileSync(output);
}

test("makes a command of the form, shows the difference and gives what the program writes", async () => {
  const page = await open();
  assert.ok(await page.locator("#go").isDisabled());
  await drop(page, "source", OLD);
  await drop(page, "working", NEW);
  const command = page.locator("#command");
  assert.equal(await command.inputValue(), "FROM 'survey_2025.xml'\n  /FILEINFO.\n");
  await page.getByLabel("Roles").uncheck();
  await page.getByLabel("Value labels: how").selectOption("merge");
  await page.getByLabel("Weight", { exact: true }).check();
  await page.getByLabel("Documents", { exact: true }).check();
  await page.getByLabel("Add the variables").check();
  await page.getByLabel("Names, or a range").fill("SEX TO VOLUNT");
  const expected = "FROM 'survey_2025.xml'\n  /SOURCE VARIABLES=SEX TO VOLUNT\n  /NEWVARS\n" +
    "  /FILEINFO DOCUMENTS=REPLACE WEIGHT\n  /VARINFO VARLABEL VALLABELS=MERGE MISSING FORMATS LEVEL " +
    "ALIGNMENT WIDTH ATTRIBUTES=REPLACE.\n";
  assert.equal(await command.inputValue(), expected);

  await run(page);
  assert.match(await page.locator(".downloads").innerText(), /\d+ changed variables, 1 added variable/);
  assert.match(await page.locator(".messages").innerText(), /What to do\s+Widen the variable/);
  const written = await downloaded(page, "Download survey_2026.xml");
  assert.deepEqual(written, native(expected, "survey_2026.xml"));
  assert.equal((await downloaded(page, "Download the commands")).toString(), expected);
  assert.match((await downloaded(page, "Download the report")).toString(), /^<!doctype html>/);
  assert.deepEqual(page.faults, []);
  assert.deepEqual(page.asked.map((address) => address.replace(/:.*/, "")), ["file", "blob"]);

  await command.fill("FROM 'survey_2025.xml' /VARINFO VARLABLE.");
  assert.ok(await page.locator(".outcome-part").isHidden(), "what is shown is of other choices now");
  await run(page);
  assert.match(await page.locator(".refused").last().innerText(), /Keyword VARLABLE not known/);
  assert.match(await page.locator(".refused").last().innerText(), /Did you mean VARLABEL/);
});

test("works on several codebooks, one onto many, without a source", async () => {
  const page = await open();
  const battery = join(EXAMPLES, "trust_2026.xml");
  await drop(page, "working", NEW, battery);
  await page.getByLabel("One variable").fill("q7_01");
  await page.getByLabel("Those that get").fill("q7_02 TO q7_20");
  await run(page);
  const commands = await page.locator("#command").inputValue();
  assert.match(commands, /^FROM \*\n {2}\/SOURCE VARIABLES=q7_01\n/);
  assert.match(await page.locator(".outcome-part").innerText(), /1 of 2 done/);
  assert.match(await page.locator(".refused").last().innerText(), /Unknown variable q7_01/);
  await page.locator("#which").selectOption("1");
  const written = await downloaded(page, "Download trust_2026.xml");
  assert.deepEqual(written, native(commands, battery));
});

test("takes another one of several data files", async () => {
  const archives = join(EXAMPLES, "archives");
  const page = await open();
  await drop(page, "source", join(archives, "nesstar_2025.xml"));
  await drop(page, "working", join(archives, "nesstar_2026.xml"));
  await run(page);
  const choose = async (name) => {
    await page.getByLabel(`${name} has several data files`).selectOption("F2");
    await page.waitForSelector("#go:not([disabled])");
  };
  await choose("nesstar_2026.xml");
  await choose("nesstar_2025.xml");
  const commands = await page.locator("#command").inputValue();
  assert.equal(commands, "FROM 'nesstar_2025.xml#F2'\n  /FILEINFO.\n");
  assert.match(await page.locator("#changed").innerText(), /works/);
  assert.deepEqual(await downloaded(page, "Download nesstar_2026.xml"), native(commands, "nesstar_2026.xml#F2", archives));
});

test("finds the pairs whose names have changed", async () => {
  const renamed = join(folder, "wave_2.xml");
  writeFileSync(renamed, readFileSync(OLD, "utf8").replaceAll(/(<var [^>]*name=")/g, "$1w2_"));
  const page = await open();
  await drop(page, "source", OLD);
  await drop(page, "working", renamed);
  await run(page);
  await page.getByRole("button", { name: "Find pairs" }).click();
  const ticked = page.locator(".pairs tbody tr", { has: page.locator("input:checked") });
  await ticked.first().waitFor();
  const all = await ticked.count();
  assert.ok(all > 10);
  await page.getByLabel("w2_AGE comes from AGE").uncheck();
  assert.equal(await ticked.count(), all - 1);
  await page.getByRole("button", { name: "Use the ticked pairs" }).click();
  await page.waitForSelector(".downloads");
  const commands = await page.locator("#command").inputValue();
  assert.equal(commands.match(/^FROM /gm).length, 1 + all - 1);
  assert.deepEqual(await downloaded(page, "Download wave_2.xml"), native(commands, renamed));
});

test("tells where a document is broken", async () => {
  const broken = join(folder, "broken.xml");
  writeFileSync(broken, "<codeBook><fileDscr/>\n <dataDscr><var name='a'></vr></dataDscr></codeBook>");
  const page = await open();
  await drop(page, "source", OLD);
  await drop(page, "working", broken);
  await run(page);
  const told = await page.locator(".refused").last().innerText();
  assert.match(told, /broken\.xml: line 2, column \d+: mismatched tag/);
  assert.match(told, /<var name='a'><\/vr>/);
  assert.equal(await page.getByRole("button", { name: /^Download broken/ }).count(), 0);
});

test("takes no label for markup", async () => {
  const label = "&lt;img src=x onerror=alert(1)&gt;&lt;/script&gt;&lt;script&gt;alert(2)&lt;/script&gt;";
  const name = "<b>'x'.xml";
  writeCodebook(folder, name, [`<labl>${label}</labl>`]);
  writeCodebook(folder, "bare.xml", [""]);
  const page = await open();
  await drop(page, "source", join(folder, name));
  await drop(page, "working", join(folder, "bare.xml"));
  assert.match(await page.locator("#command").inputValue(), /^FROM '<b>''x''\.xml'/);
  await run(page);
  assert.match(await page.locator("#changed").innerText(), /<img src=x onerror=alert\(1\)>/);
  assert.equal(await page.locator("#work img, #work b").count(), 0);
  assert.deepEqual(page.faults, []);
});

test("stays alive with 20,000 variables, and can be cancelled", async () => {
  const values = "<catgry><catValu>1</catValu><labl>Yes</labl></catgry>".repeat(5);
  const many = (inside) => Array.from({ length: 20_000 }, (_, i) => inside(i));
  writeCodebook(folder, "old.xml", many((i) => `<labl>Question ${i}</labl>${values.replaceAll(">1<", `>${i}<`)}`));
  writeCodebook(folder, "new.xml", many(() => ""));
  const page = await open();
  await page.setInputFiles("#source", join(folder, "old.xml"));
  await page.setInputFiles("#working", join(folder, "new.xml"));
  await page.click("#go");
  await page.click("#cancel");
  await page.waitForSelector("#go:not([disabled])");
  assert.ok(await page.locator(".outcome-part").isHidden());
  await run(page);
  assert.match(await page.locator(".downloads").innerText(), /20,000 changed variables/);
  assert.ok((await page.locator(".variable").count()) < 500, "rows are drawn as they are needed");
  await page.getByRole("searchbox").fill("question 19999"); // a label, and the name of another one
  await page.waitForFunction(() => document.querySelector(".filters .status")?.textContent?.startsWith("2 of"));
  assert.deepEqual(page.faults, []);
});

test("is the same from a server, with its examples, and asks for nothing but its parts", async () => {
  const types = { html: "text/html", css: "text/css", js: "text/javascript", wasm: "application/wasm" };
  const server = createServer((request, response) => {
    const name = request.url === "/" ? "index.html" : request.url.slice(1);
    response.setHeader("Content-Type", types[name.split(".").at(-1)] ?? "text/plain");
    response.end(readFileSync(join(BUILD, "page", name)));
  });
  await new Promise((done) => server.listen(0, "127.0.0.1", done));
  const address = `http://127.0.0.1:${server.address().port}/`;
  try {
    const page = await open(address);
    await page.getByRole("button", { name: "Try it on an example" }).click();
    await run(page);
    await page.getByLabel("Roles").uncheck();
    await run(page);
    const commands = await page.locator("#command").inputValue();
    assert.deepEqual(await downloaded(page, "Download survey_2026.xml"), native(commands, "survey_2026.xml"));
    const asked = page.asked.map((request) => request.replace(address, "").replace(/^blob:.*/, "blob"));
    const parts = ["", "applydic.wasm", "page.css", "page.js", "worker.js"];
    assert.deepEqual([...new Set(asked)].filter((name) => name !== "blob").sort(), parts);
    assert.deepEqual(page.faults, []);
  } finally {
    server.close();
  }
});

test("is open to keyboards and screen readers, in the dark and on a phone", async () => {
  for (const options of [{}, { colorScheme: "dark" }, { viewport: { width: 390, height: 800 } }]) {
    const page = await open(FILE, { ...options, bypassCSP: true });
    await page.locator("#example").focus();
    await page.keyboard.press("Enter");
    await page.keyboard.press("Enter"); // the focus is on what comes next
    await page.waitForSelector(".difference");
    await page.evaluate(axe.source);
    const { violations } = await page.evaluate(() => globalThis.axe.run());
    assert.deepEqual(violations.map(({ id, nodes }) => `${id}: ${nodes[0].html}`), []);
    const overflows = await page.evaluate(() => document.documentElement.scrollWidth > innerWidth);
    assert.equal(overflows, false);
  }
});
