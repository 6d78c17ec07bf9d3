/* SPDX-License-Identifier: Apache-2.0 */
/* viewlibd, a device that is this program, and the program pubsec-device. */
import {spawn} from 'node:child_process';
import {createHash, randomBytes} from 'node:crypto';
import {mkdtemp, readFile, rm} from 'node:fs/promises';
import {tmpdir} from 'node:os';
import {dirname, join} from 'node:path';
import {fileURLToPath} from 'node:url';

export const root = join(dirname(fileURLToPath(import.meta.url)), '..', '..');
export const portrait = join(root, 'samples', 'portrait.jpg');
const programs = join(process.env.PUBSEC_BUILD || join(root, 'build'), 'bin');

export const pause = (milliseconds) => new Promise((done) => { setTimeout(done, milliseconds); });

/* What a condition gives as soon as it gives something. */
export async function until(what, condition, seconds = 20) {
    const end = Date.now() + seconds * 1000;
    for (;;) {
        const result = await condition();
        if (result) {
            return result;
        }
        if (Date.now() > end) {
            throw new Error(`not in ${seconds} s: ${what}`);
        }
        await pause(50);
    }
}

export class Server {
    async start(port = 0) {
        this.folder = this.folder || await mkdtemp(join(tmpdir(), 'viewlibd-page-'));
        const file = join(this.folder, `port-${Date.now()}`);
        this.output = '';
        this.process = spawn(join(programs, 'viewlibd'), ['--port', String(port), '--port-file', file, '--data', './records'], {cwd: this.folder});
        this.process.stdout.on('data', (text) => { this.output += text; });
        this.process.stderr.on('data', (text) => { this.output += text; });
        this.ended = new Promise((done) => { this.process.on('close', done); });
        this.process.on('error', (error) => { this.output += error.message; });
        this.port = await until(`viewlibd listens: ${this.output}`, async () => {
            if (this.process.exitCode !== null) {
                throw new Error(`viewlibd ended: ${this.output}`);
            }
            return Number(await readFile(file, 'utf8').catch(() => '0'));
        });
        this.url = `http://127.0.0.1:${this.port}`;
        return this;
    }

    async stop() {
        this.process.kill('SIGTERM');
        await this.ended;
    }

    async remove() {
        await this.stop();
        await rm(this.folder, {recursive: true, force: true});
    }

    async api(path) {
        const answer = await fetch(this.url + path);
        return answer.json();
    }
}

const md5 = (text) => createHash('md5').update(text).digest('hex');
const media = 'application/VIID+JSON;charset=UTF-8';

export class Device {
    constructor(server, id) {
        this.server = server;
        this.id = id;
    }

    async post(path, document, headers = {}) {
        const answer = await fetch(this.server.url + path, {
            method: 'POST', body: JSON.stringify(document), headers: {'User-Identify': this.id, 'Content-Type': media, ...headers},
        });
        const text = await answer.text();
        return {status: answer.status, text, headers: answer.headers};
    }

    async register() {
        const path = '/VIID/System/Register';
        const document = {RegisterObject: {DeviceID: this.id}};
        const first = await this.post(path, document);
        const field = (name) => new RegExp(`${name}="([^"]*)"`).exec(first.headers.get('WWW-Authenticate'))[1];
        const nonce = field('nonce');
        const cnonce = randomBytes(8).toString('hex');
        const response = md5([md5(`admin:${field('realm')}:viewlib`), nonce, '00000001', cnonce, 'auth', md5(`POST:${path}`)].join(':'));
        const credentials = `Digest username="admin", realm="${field('realm')}", nonce="${nonce}", uri="${path}", qop=auth, nc=00000001, ` +
            `cnonce="${cnonce}", response="${response}", opaque="${field('opaque')}", algorithm=MD5`;
        const answer = await this.post(path, document, {Authorization: credentials});
        if (answer.status !== 200) {
            throw new Error(`registration: ${answer.status} ${answer.text}`);
        }
    }

    source(serial) {
        return `${this.id}0220260101120000${String(serial).padStart(5, '0')}`;
    }

    thing(serial, members = {}) {
        return {
            ThingID: `${this.source(1)}99${String(serial).padStart(5, '0')}`, InfoKind: 1, SourceID: this.source(1), DeviceID: this.id,
            LeftTopX: 1, LeftTopY: 2, RightBtmX: 30, RightBtmY: 40, Name: 'thing', Shape: 'other', Color: '2', ...members,
        };
    }

    async postThings(things) {
        const answer = await this.post('/VIID/Things', {ThingListObject: {ThingObject: things}});
        if (answer.status !== 200) {
            throw new Error(`things: ${answer.status} ${answer.text}`);
        }
    }
}

/* Runs pubsec-device: {code, output}. */
export function runDevice(server, ...options) {
    return new Promise((done, fail) => {
        const child = spawn(join(programs, 'pubsec-device'), ['--port', String(server.port), '--picture', portrait, ...options]);
        let output = '';
        child.stdout.on('data', (text) => { output += text; });
        child.stderr.on('data', (text) => { output += text; });
        child.on('error', fail);
        child.on('close', (code) => done({code, output}));
    });
}
