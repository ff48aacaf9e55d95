// The page as a visitor uses it, in headless Chromium from file:// at 1024 pixels wide: open a
// demo file, set the motifs (one for all, one by locus), set the seed, run, open a locus from the
// overview, download the JSON, the CSV and the HTML report, and compare them with tavrelle-batch
// on the same file and seed. Screenshots before, during and after the run go to SHOTS.
// Usage: node page-test.js SITE_FOLDER BATCH DEMO_FILE [SHOTS]
'use strict';
const assert = require('assert');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { pathToFileURL } = require('url');
const { launchChromium, watchPage } = require('./browser');
const { runBatch, firstDifference, withoutRunLines } = require('./batch');

const [site, batch, demo, shots] = process.argv.slice(2);

async function waitForFile(file) {
    for (let i = 0; i < 300; ++i) {
        if (fs.existsSync(file) && fs.statSync(file).size > 0) return fs.readFileSync(file, 'utf8');
        await new Promise((resolve) => setTimeout(resolve, 100));
    }
    throw new Error(`no download ${path.basename(file)}`);
}

async function main() {
    const downloads = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrelle-downloads-'));
    const browser = await launchChromium();
    const page = await browser.newPage();
    await page.setViewport({ width: 1024, height: 900 });
    const index = pathToFileURL(path.resolve(site, 'index.html')).href;
    const faults = watchPage(page, pathToFileURL(path.resolve(site)).href);
    const session = await page.createCDPSession();
    await session.send('Browser.setDownloadBehavior', { behavior: 'allow', downloadPath: downloads });
    const shot = async (name) => {
        if (!shots) return;
        fs.mkdirSync(shots, { recursive: true });
        await page.screenshot({ path: path.join(shots, name), fullPage: true });
    };

    await page.goto(index);
    await page.waitForFunction(() => document.getElementById('version').textContent !== '');
    const input = await page.$('#file-input');
    await input.uploadFile(path.resolve(demo));
    await page.waitForSelector('#motif-section:not([hidden])');
    const loci = await page.$$eval('#loci-table tbody select', (all) => all.map((s) => s.dataset.locus));
    assert.ok(loci.length > 1, 'the loci of the demo file are listed');

    // Motifs: 2 for every locus with the All control, then 3 for the first by its own list.
    await page.select('#all-motif', '2');
    await page.click('#all-button');
    await page.select('#motif-0', '3');
    await page.type('#seed', '12345');
    await page.$eval('#bootstrap', (box) => { box.value = '300'; });
    const options = { repeat: Object.fromEntries(loci.map((locus, i) => [locus, i === 0 ? 3 : 2])), seed: 12345, bootstrap: 300 };
    await shot('1-before-run.png');

    await page.click('#run-button');
    await page.waitForSelector('#progress:not([hidden])');
    // The first population done, or the whole run if it was quicker than the page's polling.
    await page.waitForFunction(() => document.getElementById('progress').value >= 1 ||
        !document.getElementById('results-section').hidden);
    await shot('2-during-run.png');
    await page.waitForSelector('#results-section:not([hidden])', { timeout: 10 * 60 * 1000 });
    const progressText = await page.$eval('#progress-text', (node) => node.textContent);
    assert.match(progressText, /^Done: \d+ analysed/);

    // A cell of the overview opens its population and locus, by keyboard as by mouse.
    await page.focus('#overview a');
    await page.keyboard.press('Enter');
    await page.waitForSelector('#locus-detail:not([hidden])');
    const detail = await page.$eval('#locus-detail', (node) => ({
        graphs: node.querySelectorAll('figure svg').length,
        texts: [...node.querySelectorAll('pre')].map((p) => p.textContent),
        estimates: node.querySelectorAll('table.estimates tr').length,
        inbreeding: (node.querySelector('.inbreeding') || {}).textContent || '',
    }));
    assert.strictEqual(detail.graphs, 2, 'both graphs of the locus');
    assert.ok(detail.texts.length === 2 && detail.texts.every((t) => t.length > 0), 'both verdict texts');
    assert.strictEqual(detail.estimates, 10, 'eight estimates and the failure rate with their intervals, and a header');
    assert.match(detail.inbreeding, /F = /);
    await shot('3-after-run-locus-open.png');
    await page.evaluate(() => document.getElementById('results-heading').scrollIntoView());
    await page.screenshot(shots ? { path: path.join(shots, '4-overview.png') } : {});

    await page.click('#download-json');
    await page.click('#download-csv');
    await page.click('#download-report');
    const base = path.basename(demo).replace(/\.[^.]*$/, '');
    const web = {
        json: await waitForFile(path.join(downloads, `${base}.json`)),
        csv: await waitForFile(path.join(downloads, `${base}.csv`)),
        report: withoutRunLines(await waitForFile(path.join(downloads, `${base}-report.html`))),
    };
    const native = runBatch(batch, demo, options);
    for (const what of ['json', 'csv', 'report'])
        assert.ok(web[what] === native[what], `the downloaded ${what} differs from tavrelle-batch's at ${firstDifference(web[what], native[what])}`);
    assert.deepStrictEqual(faults, [], 'no script error, refused policy or outside request');

    await browser.close();
    fs.rmSync(downloads, { recursive: true, force: true });
    console.log(`page-test: ${path.basename(demo)}: ${loci.length} loci, downloads same as tavrelle-batch`);
}

main().catch((error) => {
    console.error(`page-test: FAIL ${error.stack || error}`);
    process.exit(1);
});
