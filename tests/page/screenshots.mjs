/* SPDX-License-Identifier: Apache-2.0 */
/* Makes the pictures of the page in docs/images, of a server with a device's tour in it. */
import {mkdir, stat} from 'node:fs/promises';
import {join} from 'node:path';
import {desk, launch, openPage} from './browser.mjs';
import {Device, Server, root, runDevice} from './server.mjs';

const folder = join(root, 'docs', 'images');
const most = 300000; /* bytes of a picture */
const hand = {width: 390, height: 844};

/* name, path, what has to be there, and how the page is opened */
const pictures = (face, post) => [
    ['page-object', `objects/${face}`, '.frame-of-scene img', {viewport: {width: 1220, height: 610}}],
    ['page-live', 'live', '.feed li', {viewport: desk, scheme: 'dark'}],
    ['page-exchange', `exchanges/${post}?Path=/VIID/Faces`, '.exchange-detail', {viewport: desk}],
    ['page-faults', 'faults', '.row.fault', {viewport: {width: 1280, height: 720}, locale: 'zh-CN'}],
    ['page-phone', `objects/${face}`, '.frame-of-scene img', {viewport: hand, scheme: 'dark'}],
];

const server = await new Server().start();
const browser = await launch();
try {
    const faults = [{Device: '*', Resource: '/VIID/System/Keepalive', Method: '*', Count: 3, Preset: 'keepalive-10'},
        {Device: '34020000001190000002', Resource: '/VIID/Faces', Method: 'POST', Share: 0.25, Answer: {Status: 503}}];
    for (const fault of faults) {
        await fetch(`${server.url}/api/faults`, {method: 'POST', headers: {'Content-Type': 'application/json'}, body: JSON.stringify(fault)});
    }
    for (const id of ['34020000001190000001', '34020000001190000002']) {
        await new Device(server, id).register();
    }
    await runDevice(server, '--tour');
    const {Objects} = await server.api('/api/objects?Kind=Face&Limit=50');
    const {Exchanges} = await server.api('/api/exchanges?Path=/VIID/Faces&Limit=1');
    for (const [name, path, wanted, options] of pictures(Objects[Objects.length - 1].Object, Exchanges[0].Exchange)) {
        const page = await openPage(browser, options);
        await page.goto(`${server.url}/#/${path}`);
        await page.locator(wanted).first().waitFor();
        await page.waitForLoadState('load');
        await page.evaluate(async () => {
            document.activeElement.blur();
            await Promise.all([...document.images].filter((image) => image.loading !== 'lazy').map((image) => image.decode()));
        });
        await page.waitForTimeout(1500); /* for the pictures of the list, and the animation of new rows */
        const file = join(folder, `${name}.png`);
        await mkdir(folder, {recursive: true});
        await page.screenshot({path: file});
        const {size} = await stat(file);
        console.log(`${file}: ${size} bytes`);
        if (size > most) {
            throw new Error(`${file} is larger than ${most} bytes`);
        }
        await page.context().close();
    }
    console.log('1 passed, 0 failed');
} finally {
    await browser.close();
    await server.remove();
}
