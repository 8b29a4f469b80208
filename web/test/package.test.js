// The package as its users have it: packed, installed into an empty folder, called as a program and as
// a module. scripts/web runs this after npm pack; APPLYDIC_TARBALL is what that made, APPLYDIC_NATIVE
// the native program.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';

const examples = fileURLToPath(new URL('../../examples', import.meta.url));
const native = path.resolve(process.env.APPLYDIC_NATIVE);
const all = "FROM 'survey_2025.xml' /FILEINFO ALL /VARINFO ALL /NEWVARS";
const example = (name) => fs.readFileSync(path.join(examples, name));

let folder;
let calls;

before(async () => {
  folder = fs.mkdtempSync(path.join(os.tmpdir(), 'applydic-package-'));
  fs.writeFileSync(path.join(folder, 'package.json'), '{"type": "module", "private": true}');
  execFileSync('npm', ['install', '--no-audit', '--no-fund', '--offline',
    path.resolve(process.env.APPLYDIC_TARBALL)], { cwd: folder, stdio: 'pipe' });
  const index = path.join(folder, 'node_modules/applydic/index.js');
  calls = await import(pathToFileURL(index));
});
after(() => fs.rmSync(folder, { recursive: true }));

/** Runs the native program on the examples; its file of the name `output` is what it wrote. */
function runNative(args) {
  const output = path.join(folder, 'native.xml');
  fs.rmSync(output, { force: true });
  const done = spawnSync(native, [...args, '-o', output, 'survey_2026.xml'], { cwd: examples });
  return { ...done, written: fs.existsSync(output) ? fs.readFileSync(output) : null };
}

test('is installed with nothing else', () => {
  assert.deepEqual(fs.readdirSync(path.join(folder, 'node_modules'))
    .filter((name) => !name.startsWith('.')), ['applydic']);
});

test('npx runs the program, on the files of the folder', () => {
  for (const name of ['survey_2025.xml', 'survey_2026.xml']) {
    fs.copyFileSync(path.join(examples, name), path.join(folder, name));
  }
  const args = ['apply', '-c', all];
  const done = spawnSync(
    'npx', ['--offline', '--silent', 'applydic', ...args, '-o', 'out.xml', 'survey_2026.xml'], { cwd: folder });
  assert.equal(done.status, 0, done.stderr.toString());
  const expected = runNative(args);
  assert.deepEqual(fs.readFileSync(path.join(folder, 'out.xml')), expected.written);
  assert.equal(done.stderr.toString(), expected.stderr.toString());
});

test('a module script finds the calls by the name of the package', () => {
  fs.writeFileSync(path.join(folder, 'script.js'), `
    import { readFile } from 'node:fs/promises';
    import { show } from 'applydic';
    const { outcome } = await show({ file: await readFile('survey_2025.xml'), variables: ['SEX'] });
    console.log(outcome.variables[0].label);`);
  const printed = execFileSync(process.execPath, ['script.js'], { cwd: folder });
  assert.equal(printed.toString(), 'Sex of the person\n');
});

test('apply gives the bytes and the outcome of the native program', async () => {
  const working = example('survey_2026.xml');
  const result = await calls.apply({
    working: { bytes: working, name: 'survey_2026.xml' },
    sources: { 'survey_2025.xml': example('survey_2025.xml') },
    command: all,
  });
  const expected = runNative(['apply', '-c', all, '--json']);
  assert.equal(result.status, 0);
  assert.deepEqual(Buffer.from(result.written), expected.written);
  const { written, ...outcome } = JSON.parse(expected.stdout);
  assert.deepEqual(result.outcome, { ...outcome, written: 'survey_2026.xml', replaced: true });
  assert.equal(result.diagnostics.map(({ severity, message }) =>
    `applydic: ${severity}: ${message}\n`).join(''), expected.stderr.toString());
  assert.deepEqual(working, example('survey_2026.xml'));
});

test('a dry run writes nothing and tells the same', async () => {
  const options = {
    working: example('survey_2026.xml'),
    sources: { 'survey_2025.xml': example('survey_2025.xml') },
    syntax: all,
  };
  const written = await calls.apply(options);
  const dry = await calls.apply({ ...options, dryRun: true });
  assert.equal(dry.written, null);
  assert.deepEqual(dry.outcome, { ...written.outcome, written: null, replaced: false });
});

test('several sources, in folders, and a data file by its ID', async () => {
  const result = await calls.apply({
    working: { bytes: example('survey_2026.xml'), name: 'new/this.xml' },
    sources: { 'old/2025.xml': example('survey_2025.xml'), 'trust.xml': example('trust_2026.xml') },
    syntax: "FROM 'old/2025.xml'.\nFROM '/trust.xml' /NEWVARS.\n",
  });
  assert.equal(result.status, 0, JSON.stringify(result.diagnostics));
  const unknown = await calls.show({ file: { bytes: result.written, name: 'a.xml', id: 'none' } });
  assert.equal(unknown.status, 2);
  assert.match(unknown.diagnostics[0].message, /^a\.xml: has no data file with the ID none/);
});

test('diff tells what apply did', async () => {
  const working = example('survey_2026.xml');
  const { written, outcome } = await calls.apply({
    working, sources: { 'survey_2025.xml': example('survey_2025.xml') }, command: all,
  });
  const same = await calls.diff({ old: working, new: working });
  assert.equal(same.status, 0);
  const differs = await calls.diff({ old: working, new: written });
  assert.equal(differs.status, 1);
  assert.deepEqual(differs.outcome.changed, outcome.changed);
});

test('match gives the commands that the native program writes', async () => {
  const old = example('survey_2025.xml');
  const renamed = Buffer.from(old.toString().replaceAll(/(<(\w+:)?var [^>]*name=")/g, '$1w2_'));
  const given = path.join(folder, 'w2.xml');
  fs.writeFileSync(given, renamed);
  const printed = execFileSync(native, ['match', '--json', '-o', 'pairs', path.join(examples, 'survey_2025.xml'), given],
    { cwd: folder, stdio: 'pipe' });
  const { outcome, syntax } = await calls.match({ old, new: { bytes: renamed, name: given } });
  assert.ok(outcome.proposals.length > 10);
  assert.deepEqual(outcome.proposals, JSON.parse(printed).proposals);
  const commandsIn = (text) => text.replaceAll(/FROM '[^']*'/g, 'FROM');
  assert.equal(commandsIn(syntax).slice(-500), commandsIn(fs.readFileSync(path.join(folder, 'pairs'), 'utf8')).slice(-500));
});

test('what is refused is told, and nothing is written', async () => {
  const working = example('survey_2026.xml');
  const broken = Buffer.from(working.toString().replace(/<\/(\w+:)?dataDscr>/, ''));
  const ofBroken = await calls.apply({ working: broken, command: 'FROM *' });
  assert.equal(ofBroken.status, 2);
  assert.equal(ofBroken.written, null);
  assert.equal(ofBroken.outcome, null);
  assert.match(ofBroken.diagnostics[0].message, /line \d+/);
  const ofSource = await calls.apply({ working, command: "FROM 'nowhere.xml'" });
  assert.equal(ofSource.status, 1);
  assert.equal(ofSource.written, null);
  assert.equal(ofSource.outcome.diagnostics.length, 1);
  await assert.rejects(calls.apply({ working }), TypeError);
  await assert.rejects(calls.apply({ working, command: 'FROM *', syntax: 'FROM *' }), TypeError);
  await assert.rejects(calls.apply({
    working, sources: { 'working.xml': working }, command: 'FROM *',
  }), TypeError);
  await assert.rejects(calls.show({ file: 'survey_2026.xml' }), TypeError);
});

test('calls leave nothing behind', async () => {
  const options = {
    working: example('survey_2026.xml'),
    sources: { 'survey_2025.xml': example('survey_2025.xml') },
    command: all,
  };
  const first = await calls.apply(options);
  for (let i = 0; i < 100; ++i) await calls.apply(options);
  const [last, other] = await Promise.all([calls.apply(options), calls.apply(options)]);
  assert.deepEqual(last, first);
  assert.deepEqual(other, first);
  assert.ok(process.memoryUsage().rss < 2 ** 30, `${process.memoryUsage().rss} bytes are used`);
});

test('standard input and output are those of node', () => {
  const cli = path.join(folder, 'node_modules/applydic/cli.js');
  const done = spawnSync(process.execPath, [cli, 'apply', '-f', '-', '-n', 'survey_2026.xml'],
    { cwd: examples, input: "FROM 'survey_2025.xml'." });
  assert.equal(done.status, 0);
  assert.match(done.stdout.toString(), /Variables changed/);
});

test('an interrupt waits until the file is whole', { skip: process.platform === 'win32' }, () => {
  // The source is a pipe that the shell fills after the interrupt, so the program is surely at work.
  const cli = path.join(folder, 'node_modules/applydic/cli.js');
  const done = spawnSync(process.execPath, ['--import', 'data:text/javascript,' + encodeURIComponent(`
    import fs from 'node:fs';
    const rename = fs.renameSync;
    fs.renameSync = (from, to) => { process.kill(process.pid, 'SIGINT'); rename(from, to); };`),
  cli, 'apply', '-q', '-c', all, '-o', path.join(folder, 'interrupted.xml'), 'survey_2026.xml'],
  { cwd: examples });
  assert.equal(done.signal, 'SIGINT');
  const expected = runNative(['apply', '-q', '-c', all]);
  assert.deepEqual(fs.readFileSync(path.join(folder, 'interrupted.xml')), expected.written);
});
