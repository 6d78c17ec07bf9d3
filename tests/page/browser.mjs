/* SPDX-License-Identifier: Apache-2.0 */
/* Debian's Chromium, and the colours of what it shows. */
import {chromium} from 'playwright-core';

export const launch = () => chromium.launch({
    executablePath: process.env.CHROMIUM || '/usr/bin/chromium', headless: true,
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
        '--disable-component-update', '--disable-sync'],
});

export const desk = {width: 1280, height: 800};
export const phone = {width: 360, height: 780};

/* A page of its own profile that notes what goes wrong in it and whom it asks. */
export async function openPage(browser, {viewport = desk, locale = 'en-GB', scheme = 'light'} = {}) {
    const context = await browser.newContext({viewport, locale, colorScheme: scheme, acceptDownloads: true});
    context.setDefaultTimeout(20000);
    const page = await context.newPage();
    page.problems = [];
    page.hosts = new Set();
    page.on('pageerror', (error) => page.problems.push(error.message));
    page.on('console', (message) => {
        if (message.type() === 'error') {
            page.problems.push(message.text());
        }
    });
    page.on('request', (request) => page.hosts.add(new URL(request.url()).origin));
    return page;
}

/* The colours of a screenshot at these points: [[red, green, blue], ...]. */
export async function colours(browser, png, points) {
    const page = await browser.newPage();
    try {
        return await page.evaluate(async ({data, where}) => {
            const image = new Image();
            image.src = `data:image/png;base64,${data}`;
            await image.decode();
            const canvas = document.createElement('canvas');
            canvas.width = image.width;
            canvas.height = image.height;
            const context = canvas.getContext('2d');
            context.drawImage(image, 0, 0);
            return where.map(([x, y]) => [...context.getImageData(x, y, 1, 1).data.slice(0, 3)]);
        }, {data: png.toString('base64'), where: points});
    } finally {
        await page.close();
    }
}
