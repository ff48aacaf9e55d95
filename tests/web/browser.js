// Debian's Chromium, headless, for the web version's tests and benchmark: started with a fresh
// profile and nothing that talks to the network, and a small static server for the http case.
'use strict';
const fs = require('fs');
const http = require('http');
const os = require('os');
const path = require('path');
const puppeteer = require('puppeteer-core');

const chromiumFlags = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
    '--disable-background-networking', '--disable-component-update', '--disable-sync'];

async function launchChromium() {
    const profile = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrelle-chromium-'));
    const browser = await puppeteer.launch({
        executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
        headless: true,
        userDataDir: profile,
        args: chromiumFlags,
        protocolTimeout: 30 * 60 * 1000,
    });
    const close = browser.close.bind(browser);
    browser.close = async () => {
        await close();
        fs.rmSync(profile, { recursive: true, force: true });
    };
    return browser;
}

// Serves `folder` on a free port of 127.0.0.1; resolves to {url, close()}.
function serveFolder(folder) {
    const types = { '.html': 'text/html', '.js': 'text/javascript', '.css': 'text/css' };
    const server = http.createServer((request, response) => {
        const name = path.normalize(decodeURIComponent(new URL(request.url, 'http://x').pathname));
        const file = path.join(folder, name === '/' ? 'index.html' : name);
        if (!file.startsWith(folder) || !fs.existsSync(file) || fs.statSync(file).isDirectory()) {
            response.writeHead(404).end();
            return;
        }
        response.writeHead(200, { 'Content-Type': types[path.extname(file)] || 'application/octet-stream' });
        fs.createReadStream(file).pipe(response);
    });
    return new Promise((resolve) => server.listen(0, '127.0.0.1', () => resolve({
        url: `http://127.0.0.1:${server.address().port}/`,
        close: () => new Promise((done) => server.close(done)),
    })));
}

// Fails the page on anything it should never do: a script error, a refused policy, a request
// to anywhere but the page's own files.
function watchPage(page, origin) {
    const faults = [];
    page.on('pageerror', (error) => faults.push(`page error: ${error.message}`));
    page.on('console', (message) => {
        if (message.type() !== 'error') return;
        const where = message.location();
        faults.push(`console error: ${message.text()}${where && where.url ? ` (${where.url}:${where.lineNumber})` : ''}`);
    });
    page.on('request', (request) => {
        const url = request.url();
        if (!(url.startsWith(origin) || url.startsWith('blob:') || url.startsWith('data:')))
            faults.push(`request outside the page: ${url}`);
    });
    return faults;
}

module.exports = { launchChromium, serveFolder, watchPage };
