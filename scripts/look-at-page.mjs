// SPDX-License-Identifier: MIT
//
// The part of look-at-page.sh that drives Chromium.
// Usage: look-at-page.mjs CACHE CHROMIUM PAGE...

import { createRequire } from 'node:module';
import { readFileSync } from 'node:fs';

const [cache, chromium, ...pages] = process.argv.slice(2);
const require = createRequire(`${cache}/node_modules/`);
const puppeteer = (await import(require.resolve('puppeteer-core'))).default;
const axe = readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');

const looks = [
    { name: 'light', scheme: 'light', media: 'screen', width: 1280 },
    { name: 'dark', scheme: 'dark', media: 'screen', width: 1280 },
    { name: 'narrow', scheme: 'light', media: 'screen', width: 390 },
    { name: 'print', scheme: 'light', media: 'print', width: 794 },
];
let failures = 0;
function fail(page, look, what) {
    console.error(`${page} (${look}): ${what}`);
    ++failures;
}

const browser = await puppeteer.launch({
    executablePath: chromium,
    args: ['--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage'],
});
for (const file of pages) {
    const start = file.replace(/\.html$/, '');
    for (const look of looks) {
        const page = await browser.newPage();
        page.on('console', message => fail(file, look.name, `console: ${message.text()}`));
        page.on('pageerror', error => fail(file, look.name, error.message));
        page.on('request', request => {
            if (request.url() !== `file://${file}`) fail(file, look.name, `asks for ${request.url()}`);
        });
        await page.setBypassCSP(true);  // for axe alone; the page has no script
        await page.setViewport({ width: look.width, height: 900 });
        // Either of the two takes back what the other has set.
        if (look.media === 'print') await page.emulateMediaType('print');
        else await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: look.scheme }]);
        await page.goto(`file://${file}`);
        await page.screenshot({ path: `${start}-${look.name}.png`, fullPage: true });
        if (look.media === 'print') await page.pdf({ path: `${start}.pdf`, format: 'A4' });
        const overflow = await page.evaluate(
            () => document.documentElement.scrollWidth - document.documentElement.clientWidth);
        if (overflow > 0) fail(file, look.name, `${overflow} pixels wider than the window`);
        await page.evaluate(axe);
        const { violations } = await page.evaluate(() => globalThis.axe.run());
        for (const { id, help, nodes } of violations)
            fail(file, look.name, `${id}: ${help}: ${nodes[0].html.slice(0, 200)}`);
        await page.close();
    }
}
await browser.close();
console.log(`${pages.length} pages in ${looks.length} looks, ${failures} failures`);
process.exit(failures === 0 ? 0 : 1);
