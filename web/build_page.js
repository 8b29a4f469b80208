// Builds the page in its two forms: a folder for a web server, and one file with everything in it.
// Usage: node build_page.js BUILD ESBUILD
//   BUILD    the folder that web/CMakeLists.txt is built in, with package/; it gets page/ and
//            applydic.html
//   ESBUILD  the program that joins modules

import { execFileSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { copyFileSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { gzipSync } from 'node:zlib';

const [build = '', esbuild = ''] = process.argv.slice(2);
const web = fileURLToPath(new URL('.', import.meta.url));
const packageFolder = resolve(build, 'package');
const page = join(build, 'page');
mkdirSync(page, { recursive: true });

/** The modules that a module needs, and it, as one script. */
function joined(module, parts) {
  return execFileSync(esbuild, [
    join(web, 'page', module), '--bundle', '--format=iife', '--minify', '--charset=utf8',
    '--target=chrome100,firefox110,safari16.4', '--legal-comments=none', '--loader:.xml=text',
    `--alias:page-parts=${join(web, 'page', parts)}`, `--alias:package=${packageFolder}`,
  ], { encoding: 'utf8', maxBuffer: 1 << 28 });
}

function textOf(...path) {
  return readFileSync(join(web, ...path), 'utf8');
}

/** A script that an element takes as it is: what would end the element stands in texts alone. */
function escaped(script) {
  return script.replace(/<(?=!--|\/?script)/gi, '\\x3C');
}

function hashOf(text) {
  return `'sha256-${createHash('sha256').update(text).digest('base64')}'`;
}

function filled(template, parts) {
  return template.replace(/@([a-z]+)@/g, (_, name) => parts[name]);
}

const { version } = JSON.parse(readFileSync(join(packageFolder, 'package.json'), 'utf8'));
const template = textOf('page', 'index.html');
const style = textOf('../report/page.css') + textOf('../report/difference-view.css') + textOf('page', 'page.css');
const worker = joined('worker.js', 'parts_of_file.js');
const licenses = readFileSync(join(packageFolder, 'LICENSES.txt'), 'utf8');
const always = "img-src data:; base-uri 'none'; form-action 'none'";

// The folder.
writeFileSync(join(page, 'page.css'), style);
writeFileSync(join(page, 'page.js'), joined('page.js', 'parts_of_folder.js'));
writeFileSync(join(page, 'worker.js'), worker);
copyFileSync(join(packageFolder, 'applydic.wasm'), join(page, 'applydic.wasm'));
writeFileSync(join(page, 'LICENSES.txt'), licenses);
writeFileSync(join(page, 'index.html'), filled(template, {
  version,
  policy: `default-src 'none'; script-src 'self' 'wasm-unsafe-eval'; worker-src 'self'; ` +
    `connect-src 'self'; style-src 'self'; ${always}`,
  style: '<link rel="stylesheet" href="page.css">',
  data: '',
  licenses: '<a href="LICENSES.txt">Licences of its parts</a>',
  script: '<script src="page.js"></script>',
}));

// The file.
const script = escaped(joined('page.js', 'parts_of_file.js'));
const program = gzipSync(readFileSync(join(packageFolder, 'applydic.wasm')), { level: 9 }).toString('base64');
writeFileSync(join(build, 'applydic.html'), filled(template, {
  version,
  policy: `default-src 'none'; script-src ${hashOf(script)} 'wasm-unsafe-eval'; worker-src blob:; ` +
    `style-src ${hashOf(style)}; ${always}`,
  style: `<style>${style}</style>`,
  data: `<script type="text/plain" id="licenses">${gzipSync(licenses, { level: 9 }).toString('base64')}</script>\n` +
    `<script type="text/plain" id="program">${program}</script>\n` +
    `<script type="text/plain" id="worker">${escaped(worker)}</script>`,
  licenses: '<button type="button" class="quiet" id="show-licenses">Licences of its parts</button>',
  script: `<script>${script}</script>`,
}));
