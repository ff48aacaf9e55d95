// Tavrelle.load() and analyse() in headless Chromium on every file of a folder of real data
// sets, against tavrelle-batch on the same file, options and seed: the JSON, the CSV and the
// HTML report must be the batch program's, byte for byte. Also: a refused workbook, options
// the file does not fit, and a cancelled run after which the engine works on.
// Usage: node api-test.js SITE_FOLDER BATCH DATA_FOLDER
'use strict';
const assert = require('assert');
const fs = require('fs');
const path = require('path');
const { launchChromium, serveFolder, watchPage } = require('./browser');
const { runBatch, firstDifference, withoutRunLines } = require('./batch');

const [site, batch, data] = process.argv.slice(2);

// Each file gets other settings, so that every option reaches the engine as the batch's does.
const settings = [
    { repeat: 2, seed: 2026, bootstrap: 200 },
    { repeat: 2, seed: 1, randomisations: 2000, confidence: 100, onSuspect: 'stop', bootstrap: 100 },
    { repeat: 4, seed: 123456, confidence: 'bonferroni', maxAlleleSize: 400, bootstrap: 0 },
    { repeat: 2, seed: 7, confidence: 99, onSuspect: 'omit', bootstrap: 100 },
];

async function inPage(page, file, options, what = 'study') {
    const base64 = fs.readFileSync(file).toString('base64');
    return page.evaluate(async (base64, name, options, what) => {
        const bytes = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
        const tv = window.tv || (window.tv = await Tavrelle.load());
        const progress = [];
        try {
            if (what === 'analyse') {
                const object = await tv.analyse(bytes, name, options);
                return { object, report: await tv.report(bytes, name, options), csv: await tv.csv(bytes, name, options) };
            }
            const study = await tv.study(bytes, name, options, { onProgress: (p) => progress.push(p.done) });
            return { jsonText: study.jsonText, csv: study.csv, report: study.report, progress };
        } catch (error) {
            return { error: error.message, usage: error.usage, name: error.name };
        }
    }, base64, path.basename(file), options, what);
}

async function cancelWorks(page, file) {
    const base64 = fs.readFileSync(file).toString('base64');
    return page.evaluate(async (base64, name) => {
        const bytes = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
        const tv = await Tavrelle.load();
        const controller = new AbortController();
        let outcome;
        try {
            await tv.study(bytes, name, { repeat: 2, seed: 5, randomisations: 10000 },
                { signal: controller.signal, onProgress: () => controller.abort() });
            outcome = 'finished';
        } catch (error) {
            outcome = error.name;
        }
        const after = await tv.describe(bytes, name);
        tv.close();
        return { outcome, loci: after.loci.length };
    }, base64, path.basename(file));
}

async function main() {
    const server = await serveFolder(path.resolve(site));
    const browser = await launchChromium();
    const page = await browser.newPage();
    const faults = watchPage(page, server.url);
    await page.goto(server.url + 'index.html');
    let failures = 0;
    const files = fs.readdirSync(data).filter((f) => /\.gen$/i.test(f)).sort();
    for (const [index, name] of files.entries()) {
        const file = path.join(data, name);
        const options = settings[index % settings.length];
        const started = Date.now();
        const web = await inPage(page, file, options);
        const seconds = (Date.now() - started) / 1000;
        const native = runBatch(batch, file, options);
        try {
            assert.ok(!web.error, `the page refused ${name}: ${web.error}`);
            assert.ok(native.json, `tavrelle-batch wrote no JSON for ${name}: ${native.stderr}`);
            for (const what of ['json', 'csv', 'report']) {
                const mine = what === 'json' ? web.jsonText : what === 'report' ? withoutRunLines(web.report) : web[what];
                assert.ok(mine === native[what], `${name}: the ${what} differs from tavrelle-batch's at ${firstDifference(mine, native[what])}`);
            }
            const populations = JSON.parse(native.json).populations.length;
            assert.deepStrictEqual(web.progress, Array.from({ length: populations }, (_, i) => i + 1),
                `${name}: progress should come once per population`);
            console.log(`api-test: ${name}: same as tavrelle-batch (${populations} populations, ${seconds.toFixed(1)} s in the browser)`);
        } catch (error) {
            ++failures;
            console.error(`api-test: FAIL ${error.message}`);
        }
    }

    // analyse(), report() and csv() in turn: one run, the batch's object.
    const first = path.join(data, files[0]);
    const together = await inPage(page, first, { repeat: 2 }, 'analyse');
    const cases = [
        ['analyse() gives the parsed JSON, report() and csv() the same run',
            () => assert.ok(together.object && together.object.populations.length > 0 &&
                together.report.includes(String(together.object.seed)) && together.csv.length > 0)],
        ['a workbook is refused with a pointer to CSV export', async () => {
            const refused = await page.evaluate(async () => {
                try { await window.tv.analyse(new Uint8Array([1, 2, 3]), 'data.xlsx', { repeat: 2 }); return ''; } catch (e) { return e.message; }
            });
            assert.match(refused, /data\.xlsx is a workbook.*CSV/s);
        }],
        ['options the file does not fit are the batch program\'s usage errors', async () => {
            const usage = await inPage(page, first, { repeat: { NoSuchLocus: 2 } });
            const native = runBatch(batch, first, { repeat: { NoSuchLocus: 2 } });
            assert.strictEqual(usage.usage, true);
            assert.strictEqual(native.status, 2);
            assert.ok(native.stderr.includes(usage.error), `batch said: ${native.stderr}\npage said: ${usage.error}`);
        }],
        ['an unknown option is refused by name', async () => {
            const refused = await page.evaluate(async () => {
                try { await window.tv.analyse('x', 'x.gen', { seeds: 1 }); return ''; } catch (e) { return e.message; }
            });
            assert.match(refused, /unknown option 'seeds'/);
        }],
        ['a cancelled run ends with AbortError and the engine works on', async () => {
            const multi = files.map((f) => path.join(data, f)).find((f) => /microbov|nancycats/.test(f)) || first;
            const outcome = await cancelWorks(page, multi);
            assert.deepStrictEqual(outcome.outcome, 'AbortError');
            assert.ok(outcome.loci > 0);
        }],
    ];
    for (const [what, check] of cases) {
        try {
            await check();
            console.log(`api-test: ${what}: ok`);
        } catch (error) {
            ++failures;
            console.error(`api-test: FAIL ${what}: ${error.message}`);
        }
    }
    if (faults.length) {
        ++failures;
        console.error(`api-test: FAIL the page did what it must not:\n  ${faults.join('\n  ')}`);
    }
    await browser.close();
    await server.close();
    if (failures) {
        console.error(`api-test: ${failures} failure(s)`);
        process.exit(1);
    }
}

main().catch((error) => {
    console.error(`api-test: ${error.stack || error}`);
    process.exit(1);
});
