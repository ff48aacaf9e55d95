// The timing half of bench/web_study.sh: the same study in the page's engine (headless
// Chromium, one worker) and in tavrelle-batch --threads 1, each the best of three runs.
'use strict';
const { spawnSync } = require('child_process');
const fs = require('fs');
const path = require('path');
const { launchChromium, serveFolder } = require('../tests/web/browser');
const { commandLineOf } = require('../tests/web/batch');

const [site, batch, data, wasmBuild] = process.argv.slice(2);
const options = { repeat: 2, seed: 12345 };
const runs = 3;

async function main() {
    const server = await serveFolder(path.resolve(site));
    const browser = await launchChromium();
    const page = await browser.newPage();
    await page.goto(server.url + 'index.html');
    const base64 = fs.readFileSync(data).toString('base64');
    const web = await page.evaluate(async (base64, name, options, runs) => {
        const bytes = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
        const loadStart = performance.now();
        const tv = await Tavrelle.load();
        const load = (performance.now() - loadStart) / 1000;
        const times = [];
        for (let i = 0; i < runs; ++i) {
            const start = performance.now();
            await tv.study(bytes, name, { ...options, seed: options.seed + i });
            times.push((performance.now() - start) / 1000);
        }
        tv.close();
        return { load, best: Math.min(...times) };
    }, base64, path.basename(data), options, runs);
    await browser.close();
    await server.close();

    const nativeTimes = [];
    for (let i = 0; i < runs; ++i) {
        const start = process.hrtime.bigint();
        const run = spawnSync(path.resolve(batch), [...commandLineOf({ ...options, seed: options.seed + i }),
            data, '--threads', '1', '--json', '/dev/null', '--csv', '/dev/null', '--report', '/dev/null'], { encoding: 'utf8' });
        if (run.status !== 0 && run.status !== 3) throw new Error(`tavrelle-batch failed: ${run.stderr}`);
        nativeTimes.push(Number(process.hrtime.bigint() - start) / 1e9);
    }
    const native = Math.min(...nativeTimes);

    const sizes = {};
    for (const file of fs.readdirSync(site)) sizes[file] = fs.statSync(path.join(site, file)).size;
    const total = Object.values(sizes).reduce((a, b) => a + b, 0);
    const wasm = fs.statSync(path.join(wasmBuild, 'tavrelle-engine.wasm')).size;
    const loader = fs.statSync(path.join(wasmBuild, 'tavrelle-engine.js')).size;

    console.log(`web_study: ${path.basename(data)}, repeat 2, 1000 randomisations, 1000 bootstrap replicates`);
    console.log(`  browser (one worker):      ${web.best.toFixed(2)} s (best of ${runs}); engine start ${web.load.toFixed(2)} s`);
    console.log(`  tavrelle-batch --threads 1: ${native.toFixed(2)} s (best of ${runs})`);
    console.log(`  ratio browser / native:    ${(web.best / native).toFixed(2)} (aim: 2 or less)`);
    console.log(`  site: ${total} bytes in all (${Object.entries(sizes).map(([f, s]) => `${f} ${s}`).join(', ')})`);
    console.log(`  of which the engine: ${wasm} bytes of WebAssembly (carried as base64 in tavrelle.js) and a ${loader}-byte loader`);
}

main().catch((error) => {
    console.error(`web_study: ${error.stack || error}`);
    process.exit(1);
});
