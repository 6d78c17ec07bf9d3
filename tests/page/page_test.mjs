/* SPDX-License-Identifier: Apache-2.0 */
/* Tries the page of viewlibd in a browser, beside a real server and real devices. The last line counts the tests. */
import assert from 'node:assert/strict';
import {readFile, readdir} from 'node:fs/promises';
import {join} from 'node:path';
import {colours, launch, openPage, phone} from './browser.mjs';
import {Device, Server, root, runDevice, until} from './server.mjs';

const only = process.argv[2];
const views = ['live', 'devices', 'objects', 'files', 'exchanges', 'faults'];
const tests = [];
const test = (name, body) => tests.push({name, body});
const filled = async (server) => {
    const {code, output} = await runDevice(server, '--tour');
    assert.equal(code, 0, output);
};
const texts = (page, selector) => page.locator(selector).allInnerTexts();
const kindsShown = async (page) => [...new Set(await texts(page, '.tile strong'))];

/* The pages end with their test, so that one that fails leaves nothing behind. */
async function withPage(context, options, use) {
    const page = await openPage(context.browser, options);
    try {
        await use(page, (path) => page.goto(`${context.server.url}/#/${path}`));
        assert.deepEqual(page.problems, [], 'errors in the console');
        assert.deepEqual([...page.hosts].filter((host) => host !== context.server.url), [], 'other hosts were asked');
    } finally {
        await page.context().close();
    }
}

test('an empty server says what to try', (context) => withPage(context, {}, async (page, go) => {
    await go('devices');
    await page.getByText('No device has registered yet.').waitFor();
    const command = await page.locator('.try pre').innerText();
    assert.match(command, /^curl --digest -u admin:PASSWORD /);
    assert.ok(command.includes(`${context.server.url}/VIID/System/Register`));
    await go('live');
    await page.getByText('Nothing has happened yet.').waitFor();
    await go('faults');
    await page.getByText('No fault is set').waitFor();
}));

test('a device appears while the page is open', (context) => withPage(context, {}, async (page, go) => {
    const device = new Device(context.server, '34020000001190000077');
    await go('devices');
    await page.getByText('No device has registered yet.').waitFor();
    await device.register();
    const card = page.locator('li[data-device="34020000001190000077"]');
    await card.waitFor();
    assert.equal(await card.locator('.state').innerText(), 'online');
    await card.getByRole('button', {name: 'Expire now'}).click();
    await card.locator('.state.offline').waitFor();
    assert.equal((await device.post('/VIID/System/Keepalive', {KeepaliveObject: {DeviceID: device.id}})).status, 401);
    await device.register();
    await card.locator('.state.online').waitFor();
    await card.getByRole('button', {name: 'Forget'}).click();
    await card.waitFor({state: 'detached'});
    await go('live');
    await page.locator('.feed a', {hasText: 'Device is online'}).first().waitFor();
}));

/* The portrait is 512 pixels wide and high, and the face in it was reported at 153,14 to 301,188. */
const face = {left: 153, top: 14, right: 301, bottom: 188};
const yellow = [255, 196, 0];
const near = (colour, wanted) => colour.every((value, i) => Math.abs(value - wanted[i]) <= 40);

async function checkBox(context, page) {
    const frame = page.locator('.frame-of-scene');
    await frame.waitFor();
    await page.locator('.frame-of-scene img').evaluate((image) => image.decode());
    await frame.scrollIntoViewIfNeeded();
    const area = await frame.boundingBox();
    const scale = area.width / 512;
    assert.ok(Math.abs(area.height - 512 * scale) < 1, 'the picture keeps its proportions');
    const x = (value) => area.x + value * scale;
    const y = (value) => area.y + value * scale;
    /* Points of each edge, away from the corners, from the label and from where the boxes of others cross. */
    const between = (from, to) => Array.from({length: 25}, (_, i) => from + (to - from) * (i + 1) / 26);
    const edges = {
        left: between(y(60), y(180)).map((at) => [x(face.left), at]), right: between(y(30), y(180)).map((at) => [x(face.right), at]),
        bottom: between(x(160), x(295)).map((at) => [at, y(face.bottom)]), top: between(x(240), x(295)).map((at) => [at, y(face.top)]),
    };
    const png = await page.screenshot();
    const whole = ([px, py]) => [Math.floor(px), Math.floor(py)];
    for (const [name, points] of Object.entries(edges)) {
        const on = await colours(context.browser, png, points.map(whole));
        const hits = on.filter((colour) => near(colour, yellow)).length;
        assert.ok(hits >= 24, `${name} edge: ${hits} of 25 points are of the box's colour, such as ${on[12]}`);
        const [dx, dy] = {left: [-7, 0], right: [7, 0], top: [0, -7], bottom: [0, 7]}[name];
        const off = await colours(context.browser, png, points.map(([px, py]) => whole([px + dx, py + dy])));
        const strays = off.filter((colour) => near(colour, yellow)).length;
        assert.ok(strays <= 1, `${name} edge: ${strays} of 25 points outside of the box are of its colour`);
    }
}

async function openFace(context, page, go) {
    const {Objects} = await context.server.api('/api/objects?Kind=Face&Limit=50');
    const object = Objects[Objects.length - 1]; /* the first that came */
    await go('objects?Kind=Face');
    await page.locator(`a.tile[data-key="${object.Object}"]`).click();
    await page.locator('.facts-of').waitFor();
    return object;
}

test('a posted portrait shows with the box of its face in place', (context) => withPage(context, {}, async (page, go) => {
    await filled(context.server);
    const object = await openFace(context, page, go);
    await checkBox(context, page);
    const members = await page.locator('.members').innerText();
    assert.match(members, new RegExp(`FaceID\\s+${object.Id}`));
    assert.match(members, /LeftTopX\s+153\s/);
    assert.match(members, /InfoKind\s+1\s*automatic/);
    const tags = await texts(page, '.frame-of-scene .tag');
    assert.ok(tags.includes('Face') && tags.includes('Person') && tags.filter((tag) => tag === 'Thing').length === 2, tags.join());
    assert.equal(await page.locator('.boxes .chosen').count(), 1);
    await page.getByRole('link', {name: 'Newer'}).click();
    await until('the next face', async () => !page.url().includes(`objects/${object.Object}?`));
    await page.getByRole('link', {name: 'Older'}).click();
    await page.locator('.full-id', {hasText: object.Id}).waitFor();
    await page.locator('.tag', {hasText: 'Person'}).click();
    await page.locator('.detail h2', {hasText: 'Person'}).waitFor();
    await page.getByText('The exchange it came in').click();
    await page.locator('.request-line', {hasText: '/VIID/'}).waitFor();
    assert.match(await page.locator('.exchange-detail').innerText(), /User-Identify\s+34020000001190000001/);
}));

test('the box is in place on a phone and in the dark', (context) => withPage(context, {viewport: phone, scheme: 'dark'}, async (page, go) => {
    await filled(context.server);
    await openFace(context, page, go);
    await checkBox(context, page);
}));

test('filters narrow what is shown', (context) => withPage(context, {}, async (page, go) => {
    await filled(context.server);
    await go('objects');
    await page.locator('.tile').first().waitFor();
    assert.ok((await kindsShown(page)).length > 5);
    await page.getByLabel('Kind').selectOption('Face');
    await until('faces alone', async () => (await kindsShown(page)).join() === 'Face');
    await page.getByLabel('Device').fill('34020000001190000099');
    await page.getByText('Nothing fits the filter.').waitFor();
    await page.getByRole('button', {name: 'Clear filter'}).click();
    await until('everything again', async () => (await kindsShown(page)).length > 5);
    await page.getByLabel('With notes only').check();
    const noted = (await context.server.api('/api/objects?Notes=1&Limit=50')).Total;
    await until('those with notes', async () => (await page.locator('.tile').count()) === Math.min(50, noted));

    await go('exchanges');
    await page.locator('a.exchange').first().waitFor();
    await page.getByLabel('Status').selectOption('401');
    await until('refusals alone', async () => [...new Set(await texts(page, 'a.exchange .status'))].join() === '401');
    await page.getByLabel('Status').selectOption('');
    await page.getByLabel('Path').fill('/VIID/Faces');
    await until('faces alone', async () => [...new Set(await texts(page, 'a.exchange .path'))].join() === '/VIID/Faces');
    assert.match(page.url(), /Path=%2FVIID%2FFaces/);
}));

test('a fault that is set on the page is felt by a device and shown', (context) => withPage(context, {}, async (page, go) => {
    await go('faults');
    await page.getByLabel('Resource').fill('/VIID/Faces');
    await page.getByLabel('Own answer').check();
    await page.getByLabel('Status', {exact: true}).fill('503');
    await page.getByLabel('the next').check();
    await page.getByRole('button', {name: 'Set fault'}).click();
    const row = page.locator('.row.fault').first();
    await row.getByText('Answer 503').waitFor();
    assert.match(await row.innerText(), /\/VIID\/Faces · every device · the next 1/);
    const {code, output} = await runDevice(context.server);
    assert.equal(code, 1, output);
    assert.match(output, /post face .*73 HTTP above 500/);
    await row.getByText('1 hit').waitFor();
    assert.match(await row.innerText(), /used up/);
    await go('exchanges?Status=503');
    await page.locator('a.exchange', {hasText: '/VIID/Faces'}).first().waitFor();
    assert.match((await texts(page, 'a.exchange'))[0], /by fault \d+/);
    await go('faults');
    await page.locator('.row.fault').getByRole('button', {name: 'Remove'}).click();
    await page.getByText('No fault is set').waitFor();
    assert.equal((await runDevice(context.server)).code, 0);
}));

test('a preset is set and removed, and a wrong rule is refused in words', (context) => withPage(context, {}, async (page, go) => {
    await go('faults');
    const preset = page.locator('#fault-preset');
    const names = await preset.locator('option').evaluateAll((options) => options.map((option) => option.value));
    for (const name of ['stale-nonce', 'expired-session', 'keepalive-10']) {
        assert.ok(names.includes(name), `${name} is among ${names.join()}`);
    }
    await preset.selectOption('keepalive-10');
    await page.getByLabel('until removed').check();
    await page.getByRole('button', {name: 'Set fault'}).click();
    await page.locator('.row.fault').waitFor();
    const {Faults} = await context.server.api('/api/faults');
    assert.equal(Faults[0].Preset, 'keepalive-10');
    const device = new Device(context.server, '34020000001190000078');
    await device.register();
    const answer = await device.post('/VIID/System/Keepalive', {KeepaliveObject: {DeviceID: device.id}});
    assert.equal(String(JSON.parse(answer.text).ResponseStatusObject.StatusCode), '10');
    await page.getByLabel('Resource').fill('VIID');
    page.problems.length = 0;
    await page.getByRole('button', {name: 'Set fault'}).click();
    await page.locator('.fault-form .error').getByText('That did not work').waitFor();
    page.problems.length = 0; /* Chromium notes the refusal in the console */
    await page.getByRole('button', {name: 'Remove all'}).click();
    await page.getByText('No fault is set').waitFor();
}));

test('the clock is set off and right again', (context) => withPage(context, {}, async (page, go) => {
    await go('faults');
    await page.locator('#clock-offset').fill('-2');
    await page.getByRole('button', {name: 'Apply'}).click();
    await page.locator('.clock-form').getByText('The clock is off by −2 h').waitFor();
    assert.equal((await context.server.api('/api/status')).ClockOffsetMs, -7200000);
    await page.getByRole('button', {name: 'Right'}).click();
    await page.locator('.clock-form').getByText('The clock is right').waitFor();
    assert.equal((await context.server.api('/api/status')).ClockOffsetMs, 0);
}));

test('the keyboard is enough', (context) => withPage(context, {}, async (page, go) => {
    await filled(context.server);
    await go('live');
    await page.locator('.feed a').first().waitFor();
    const focused = (expression) => page.evaluate(`((e) => ${expression})(document.activeElement)`);
    const press = async (...keys) => {
        for (const key of keys) {
            await page.keyboard.press(key);
        }
    };
    await press('Tab');
    assert.equal(await focused('e.id'), 'skip');
    assert.ok(await focused('e.getBoundingClientRect().top >= 0'), 'the skip link shows when it has the focus');
    await press('Tab');
    assert.equal(await focused('e.id'), 'language');
    await press('Tab', 'Tab', 'Tab');
    assert.equal(await focused('e.dataset.view'), 'objects');
    assert.notEqual(await focused('getComputedStyle(e).outlineStyle'), 'none', 'the focus can be seen');
    await press('Enter');
    await page.locator('.tile').first().waitFor();
    await until('a tile has the focus', async () => {
        await press('Tab');
        return focused("e.classList.contains('tile')");
    });
    const first = await focused('e.dataset.key');
    await press('ArrowRight');
    const second = await focused('e.dataset.key');
    assert.notEqual(second, first);
    await press('ArrowDown');
    assert.ok(await focused("e.classList.contains('tile')") && await focused('e.dataset.key') !== second);
    await press('Home');
    assert.equal(await focused('e.dataset.key'), first);
    await press('ArrowRight', 'Enter');
    await page.locator('.detail .facts-of').waitFor();
    assert.equal(page.url().split('/').pop(), second);
    assert.equal(await focused("e.classList.contains('detail')"), true, 'the detail has the focus');
    await press('Escape');
    await page.locator('.detail').waitFor({state: 'hidden'});
    assert.equal(await focused('e.dataset.key'), second, 'the focus is back where it was');
    assert.equal(await page.locator('.tile[tabindex="0"]').count(), 1, 'one stop in the list');
}));

test('nothing is wider than a phone, in both languages', async (context) => {
    await filled(context.server);
    const {Objects} = await context.server.api('/api/objects?Kind=Face&Limit=1');
    for (const locale of ['en-GB', 'zh-CN']) {
        await withPage(context, {viewport: phone, locale}, async (page, go) => {
            for (const path of [...views, `objects/${Objects[0].Object}`, 'exchanges/1']) {
                await go(path);
                await page.locator('main h1').waitFor();
                await page.locator('.news > *:visible, main li:visible, .detail-body > *:visible').first().waitFor();
                const over = await page.evaluate(() => document.documentElement.scrollWidth - window.innerWidth);
                assert.ok(over <= 0, `${path} in ${locale} is ${over} pixels too wide`);
            }
            const links = await page.locator('nav a').evaluateAll((all) => all.map((link) => link.getBoundingClientRect()).map(({left, right, height}) => [left, right, height]));
            assert.ok(links.every(([left, right, height]) => left >= 0 && right <= 360 && height >= 40), 'the views can be reached with a thumb');
        });
    }
});

test('it speaks Chinese, by the browser and by choice', async (context) => {
    await withPage(context, {locale: 'zh-CN'}, async (page, go) => {
        await go('devices');
        await page.getByRole('heading', {name: '设备'}).waitFor();
        assert.equal(await page.evaluate(() => document.documentElement.lang), 'zh-CN');
        assert.deepEqual(await texts(page, 'nav .label'), ['实时', '设备', '对象', '文件', '报文', '故障']);
        await page.getByRole('button', {name: 'English'}).click();
        await page.getByRole('heading', {name: 'Devices'}).waitFor();
        await page.reload();
        await page.getByRole('heading', {name: 'Devices'}).waitFor();
        const [english, chinese] = await page.evaluate(async () => {
            const {strings} = await import('/page/text.js');
            return [strings.en, strings.zh];
        });
        assert.deepEqual(Object.keys(chinese).sort(), Object.keys(english).sort());
        const places = (text) => (text.match(/\{\d\}/g) || []).sort().join();
        const files = (await readdir(join(root, 'viewlib', 'page'))).filter((name) => name.endsWith('.js'));
        for (const name of files) {
            const used = (await readFile(join(root, 'viewlib', 'page', name), 'utf8')).matchAll(/\bt\('(\w+)'/g);
            [...used].forEach(([, key]) => assert.ok(key in english, `${key} in ${name}`));
        }
        for (const key of Object.keys(english)) {
            assert.equal(places(chinese[key]), places(english[key]), key);
        }
    });
});

async function download(page, name) {
    const [file] = await Promise.all([page.waitForEvent('download'), page.getByRole('link', {name}).click()]);
    return readFile(await file.path(), 'utf8');
}

test('what fits the filter is downloaded as HAR and as JSON lines', (context) => withPage(context, {}, async (page, go) => {
    await filled(context.server);
    await go('exchanges?Path=/VIID/Faces');
    await page.locator('a.exchange').first().waitFor();
    const shown = await page.locator('a.exchange').count();
    const {log} = JSON.parse(await download(page, 'HAR'));
    assert.equal(log.version, '1.2');
    assert.equal(log.entries.length, shown);
    for (const {request, response, startedDateTime, timings} of log.entries) {
        assert.equal(new URL(request.url).pathname, '/VIID/Faces');
        assert.equal(request.method, 'POST');
        assert.equal(response.status, 200);
        assert.ok(!Number.isNaN(Date.parse(startedDateTime)) && timings.wait >= 0);
    }
    const lines = (await download(page, 'JSON lines')).trim().split('\n').map((line) => JSON.parse(line));
    assert.equal(lines.length, shown);
    assert.ok(lines.every(({Path}) => Path === '/VIID/Faces'));
}));

test('markup from the wire is shown as text', (context) => withPage(context, {}, async (page, go) => {
    const device = new Device(context.server, '34020000001190000079');
    const evil = '<img src=x onerror="window.hacked=1"><b class="evil">bold</b>';
    await device.register();
    await device.postThings([device.thing(1, {Name: evil, Shape: evil, '<i class="evil">key</i>': '"><script>window.hacked=1</script>'})]);
    await device.post(`/VIID/${encodeURIComponent('<b class="evil">')}`, {}, {'X-Evil': evil});
    const {Objects} = await context.server.api(`/api/objects?Device=${device.id}&Limit=1`);
    await go(`objects/${Objects[0].Object}`);
    await page.locator('.members').waitFor();
    const members = await page.locator('.members').innerText();
    assert.ok(members.includes(evil) && members.includes('<i class="evil">key</i>'), members);
    for (const path of ['live', 'devices', 'exchanges']) {
        await go(path);
        await page.locator('main li').first().waitFor();
    }
    await page.locator('a.exchange').first().click();
    await page.locator('.exchange-detail').waitFor();
    assert.ok((await page.locator('.exchange-detail').innerText()).includes(evil));
    assert.equal(await page.locator('.evil').count(), 0);
    assert.equal(await page.evaluate(() => window.hacked), undefined);
}));

test('the feed can be paused', (context) => withPage(context, {}, async (page, go) => {
    const device = new Device(context.server, '34020000001190000080');
    await go('live');
    await page.getByText('Nothing has happened yet.').waitFor();
    await device.register();
    await page.locator('.feed a', {hasText: 'Device is online'}).waitFor();
    await page.getByRole('button', {name: 'Pause'}).click();
    const before = await page.locator('.feed li').count();
    await device.postThings([device.thing(1)]);
    await page.getByRole('button', {name: /Go on.*waiting/}).waitFor();
    assert.equal(await page.locator('.feed li').count(), before);
    await page.getByRole('button', {name: /Go on/}).click();
    await page.locator('.feed a', {hasText: 'Thing stored'}).waitFor();
    const newest = (await texts(page, '.feed a')).findIndex((text) => text.includes('Thing stored'));
    const oldest = (await texts(page, '.feed a')).findIndex((text) => text.includes('Device is online'));
    assert.ok(newest < oldest, 'the newest is first');
    await page.getByRole('button', {name: 'Objects', exact: true}).click();
    await page.locator('.feed a', {hasText: 'Thing stored'}).waitFor({state: 'detached'});
}));

test('ten thousand objects are shown in pages', (context) => withPage(context, {}, async (page, go) => {
    const device = new Device(context.server, '34020000001190000081');
    await device.register();
    for (let i = 0; i < 20; ++i) {
        await device.postThings(Array.from({length: 500}, (_, j) => device.thing(i * 500 + j)));
    }
    const begin = Date.now();
    await go('objects');
    await page.getByText('50 of 10,000').waitFor();
    console.log(`     the first fifty of 10,000 objects after ${Date.now() - begin} ms`);
    assert.equal(await page.locator('.tile').count(), 50);
    await page.getByRole('button', {name: 'Show more'}).click();
    await page.getByText('100 of 10,000').waitFor();
    const identifiers = await texts(page, '.tile .id');
    assert.equal(new Set(identifiers).size, 100);
    assert.equal(identifiers[99], `${device.source(1)}9909900`);
}));

test('a server that goes away and comes back is noticed', (context) => withPage(context, {}, async (page, go) => {
    await go('devices');
    await page.getByText('No device has registered yet.').waitFor();
    await context.server.stop();
    await page.getByText('The server cannot be reached.').waitFor();
    await context.server.start(context.server.port);
    await page.getByText('The server cannot be reached.').waitFor({state: 'hidden'});
    const device = new Device(context.server, '34020000001190000082');
    await device.register();
    await page.locator(`li[data-device="${device.id}"]`).waitFor();
    page.problems.length = 0; /* the refused connections */
}));

/* WCAG 2: text on what it stands on, at least 4.5 to 1. */
test('texts can be read, in the light and in the dark', async (context) => {
    for (const scheme of ['light', 'dark']) {
        await withPage(context, {scheme}, async (page, go) => {
            await go('live');
            const ratios = await page.evaluate(() => {
                const style = getComputedStyle(document.documentElement);
                const canvas = document.createElement('canvas').getContext('2d', {willReadFrequently: true});
                const light = (name) => {
                    canvas.fillStyle = style.getPropertyValue(`--${name}`);
                    canvas.fillRect(0, 0, 1, 1);
                    const [r, g, b] = [...canvas.getImageData(0, 0, 1, 1).data].map((value) => value / 255)
                        .map((value) => (value <= 0.04045 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4));
                    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
                };
                const pairs = [['text', 'ground'], ['text', 'surface'], ['muted', 'ground'], ['muted', 'surface'], ['muted', 'sunk'], ['accent', 'surface'],
                    ['accent', 'ground'], ['accent', 'accent-soft'], ['on-accent', 'accent'], ['good', 'good-soft'], ['good', 'surface'], ['warn', 'warn-soft'],
                    ['warn', 'surface'], ['bad', 'bad-soft'], ['surface', 'bad'], ['key', 'sunk'], ['literal', 'sunk'], ['literal', 'surface']];
                return pairs.map(([front, back]) => {
                    const [low, high] = [light(front), light(back)].sort((a, b) => a - b);
                    return [`${front} on ${back}`, (high + 0.05) / (low + 0.05)];
                });
            });
            const weak = ratios.filter(([, ratio]) => ratio < 4.5).map(([pair, ratio]) => `${pair} ${ratio.toFixed(2)}`);
            assert.deepEqual(weak, [], scheme);
        });
    }
});

test('whoever wants no motion gets none', (context) => withPage(context, {}, async (page, go) => {
    await page.emulateMedia({reducedMotion: 'reduce'});
    await go('live');
    await new Device(context.server, '34020000001190000083').register();
    const row = page.locator('.feed li').first();
    await row.waitFor();
    assert.equal(await row.evaluate((item) => getComputedStyle(item).animationName), 'none');
}));

let passed = 0;
let failed = 0;
const browser = await launch();
for (const {name, body} of tests.filter((each) => !only || each.name.includes(only))) {
    const begin = Date.now();
    const server = await new Server().start();
    try {
        await body({browser, server});
        ++passed;
        console.log(`ok   ${name} (${Date.now() - begin} ms)`);
    } catch (error) {
        ++failed;
        console.log(`FAIL ${name}\n     ${String(error.stack || error).split('\n').slice(0, 12).join('\n     ')}`);
    } finally {
        await server.remove();
    }
}
await browser.close();
console.log(`${passed} passed, ${failed} failed`);
process.exit(failed === 0 && passed > 0 ? 0 : 1);
