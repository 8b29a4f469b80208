// Runs the tests of the case files, compiled as WebAssembly: node run_cases.js BUILD CASE_FILE...

import fs from 'node:fs';
import path from 'node:path';
import { pathToFileURL } from 'node:url';

const [build, ...caseFiles] = process.argv.slice(2).map((file) => path.resolve(file));
const load = (file) => import(pathToFileURL(path.join(build, file)));
const { NodeSystem } = await load('package/node_system.js');
const { runOn } = await load('package/program.js');
const { default: create } = await load('case_tests.js');

// Tests make folders besides.
class TestSystem extends NodeSystem {
  #read = new Set();

  makeFolder(folder, mode) {
    fs.mkdirSync(folder, mode);
    return 0;
  }

  removeFolder(folder) {
    fs.rmdirSync(folder);
    return 0;
  }

  changeFolder(folder) {
    process.chdir(folder);
    return 0;
  }

  namesIn(folder, number) {
    if (this.#read.has(number)) return [];
    this.#read.add(number);
    return fs.readdirSync(folder);
  }
}

const compiled = await WebAssembly.compile(fs.readFileSync(path.join(build, 'case_tests.wasm')));
let failed = 0;
for (const file of caseFiles) {
  const status = await runOn(new TestSystem(), create, compiled, ['--gtest_brief=1', file]);
  if (status !== 0) ++failed;
}
console.log(`${caseFiles.length - failed} passed, ${failed} failed`);
process.exit(failed === 0 ? 0 : 1);
