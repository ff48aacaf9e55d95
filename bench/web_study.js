// The timing half of bench/web_study.sh: the same study in the page's engine (headless
// Chromium, one worker) and in tavrelle-batch --threads 1, each the best of three runs.
'use strict';
const { spawnSync } = require('child_process');
const fs = require('fs');
const path = require('path');
const { launchChromium, serveFolder } = require('../tests/web/browser');
const { commandLineOf } = require('../tests/web/batch');

const [site, batch, data, wasmBuild] = process.argv.slice(2);

// CPU seconds of a process and all its descendants, from /proc: on a busy machine the fair
// measure, as wall time then counts the other processes' turns too.
function treeCpuSeconds(root) {
    const parents = new Map();
    const ticks = new Map();
    for (const entry of fs.readdirSync('/proc')) {
        if (!/^\d+$/.test(entry)) continue;
        try {
            const stat = fs.readFileSync(`/proc/${entry}/stat`, 'utf8');
            const fields = stat.slice(stat.lastIndexOf(')') + 2).split(' ');
            parents.set(Number(entry), Number(fields[1]));
            ticks.set(Number(entry), Number(fields[11]) + Number(fields[12]));
        } catch (error) {
            // The process ended while we looked.
        }
    }
    let total = 0;
    for (const [pid, count] of ticks) {
        for (let p = pid; p > 1; p = parents.get(p) || 0)
            if (p === root) {
                total += count;
                break;
            }
    }
    return total / 100;
}

// Runs tavrelle-batch under bash's time, for its CPU seconds beside the wall time.
function timeNative(words) {
    const script = 'TIMEFORMAT="%R %U %S"; { time "$@" >/dev/null 2>&1; } 2>&1';
    const run = spawnSync('bash', ['-c', script, 'time', path.resolve(batch), ...words], { encoding: 'utf8' });
    const [wall, user, system] = run.stdout.trim().split(/\s+/).map(Number);
    return { wall, cpu: user + system };
}
const options = { repeat: 2, seed: 12345 };
const runs = 3;

async function main() {
    const server = await serveFolder(path.resolve(site));
    const browser = await launchChromium();
    const page = await browser.newPage();
    await page.goto(server.url + 'index.html');
    const base64 = fs.readFileSync(data).toString('base64');
    const pid = browser.process().pid;
    const bytesIn = await page.evaluate(async (base64) => {
        window.studyBytes = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
        const loadStart = performance.now();
        window.tv = await Tavrelle.load();
        return { load: (performance.now() - loadStart) / 1000 };
    }, base64);
    const web = [];
    for (let i = 0; i < runs; ++i) {
        const cpuBefore = treeCpuSeconds(pid);
        const wall = await page.evaluate(async (name, options) => {
            const start = performance.now();
            await window.tv.study(window.studyBytes, name, options);
            return (performance.now() - start) / 1000;
        }, path.basename(data), { ...options, seed: options.seed + i });
        web.push({ wall, cpu: treeCpuSeconds(pid) - cpuBefore });
    }
    await browser.close();
    await server.close();

    const native = [];
    for (let i = 0; i < runs; ++i)
        native.push(timeNative([...commandLineOf({ ...options, seed: options.seed + i }), data,
            '--threads', '1', '--json', '/dev/null', '--csv', '/dev/null', '--report', '/dev/null']));
    const best = (list, key) => Math.min(...list.map((run) => run[key]));

    const sizes = {};
    for (const file of fs.readdirSync(site)) sizes[file] = fs.statSync(path.join(site, file)).size;
    const total = Object.values(sizes).reduce((a, b) => a + b, 0);
    const wasm = fs.statSync(path.join(wasmBuild, 'tavrelle-engine.wasm')).size;
    const loader = fs.statSync(path.join(wasmBuild, 'tavrelle-engine.js')).size;

    console.log(`web_study: ${path.basename(data)}, repeat 2, 1000 randomisations, 1000 bootstrap replicates, best of ${runs}`);
    console.log(`  browser (one worker):       ${best(web, 'wall').toFixed(2)} s wall, ${best(web, 'cpu').toFixed(2)} s CPU (Chromium's processes); engine start ${bytesIn.load.toFixed(2)} s`);
    console.log(`  tavrelle-batch --threads 1: ${best(native, 'wall').toFixed(2)} s wall, ${best(native, 'cpu').toFixed(2)} s CPU`);
    console.log(`  ratio browser / native:     ${(best(web, 'wall') / best(native, 'wall')).toFixed(2)} by wall time, ${(best(web, 'cpu') / best(native, 'cpu')).toFixed(2)} by CPU time (aim: 2 or less)`);
    console.log(`  site: ${total} bytes in all (${Object.entries(sizes).map(([f, s]) => `${f} ${s}`).join(', ')})`);
    console.log(`  of which the engine: ${wasm} bytes of WebAssembly (carried as base64 in tavrelle.js) and a ${loader}-byte loader`);
}

main().catch((error) => {
    console.error(`web_study: ${error.stack || error}`);
    process.exit(1);
});
