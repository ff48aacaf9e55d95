// Puts the site together: the page, its style and script, and tavrelle.js, which carries the
// worker (the engine's loader, the engine as base64 and the worker's own code) as one text, so
// that the worker starts from a Blob and the page works from file:// as from any web server.
// Usage: node assemble.js WASM_BUILD_FOLDER SITE_FOLDER
'use strict';
const fs = require('fs');
const path = require('path');

const [wasmBuild, site] = process.argv.slice(2);
const here = __dirname;
const read = (file) => fs.readFileSync(file, 'utf8');

const engineLoader = read(path.join(wasmBuild, 'tavrelle-engine.js'));
const engineBytes = fs.readFileSync(path.join(wasmBuild, 'tavrelle-engine.wasm'));
const workerSource = engineLoader + '\nconst tavrelleWasmBase64 = "' +
    engineBytes.toString('base64') + '";\n' + read(path.join(here, 'worker.js'));

const marker = '/* WORKER SOURCE */ ""';
const api = read(path.join(here, 'tavrelle.js'));
if (!api.includes(marker)) throw new Error('tavrelle.js lacks the worker source marker');

fs.rmSync(site, { recursive: true, force: true });
fs.mkdirSync(site, { recursive: true });
fs.writeFileSync(path.join(site, 'tavrelle.js'), api.replace(marker, () => JSON.stringify(workerSource)));
for (const file of ['index.html', 'page.js', 'style.css'])
    fs.copyFileSync(path.join(here, file), path.join(site, file));

let total = 0;
for (const file of fs.readdirSync(site)) total += fs.statSync(path.join(site, file)).size;
console.log(`build-web: ${site}: ${total} bytes (engine ${engineBytes.length} bytes of WebAssembly)`);
