/* SPDX-License-Identifier: Apache-2.0 */
/* Video slices, files and uploads. */
import * as api from './api.js';
import {h, put, roving} from './dom.js';
import {badge, empty, heading, place, tries} from './parts.js';
import {notesText} from './objects.js';
import {bytes, clockTime, fullTime, kindName, number, t} from './text.js';

const most = 200;

function objectRow(object) {
    return h('li', {}, h('a', {class: 'row file', href: `#/objects/${object.Object}`},
        h('span', {class: 'main'}, h('strong', {}, kindName(object.Kind)), h('code', {class: 'id', title: object.Id}, object.Id || '–')),
        object.Notes.length > 0 ? badge(notesText(object.Notes), 'warn') : null,
        h('span', {class: 'number'}, bytes(object.Bytes)),
        h('time', {title: fullTime(object.Received)}, clockTime(object.Received))));
}

function uploadRow(upload) {
    return h('li', {}, h('a', {class: 'row file', href: place('exchanges', null, {Path: `/VIID/Upload/${upload.Name}`}), title: t('itsExchanges')},
        h('span', {class: 'main'}, h('strong', {}, upload.Name), h('code', {class: 'id', title: t('hash')}, upload.Hash || '')),
        h('span', {class: 'number', title: number(upload.Length)}, bytes(upload.Length)),
        upload.Changed ? h('time', {title: fullTime(upload.Changed)}, clockTime(upload.Changed)) : null));
}

export function filesView(app) {
    let due = null;
    const part = (title, load, row, none) => {
        const list = h('ul', {class: 'rows', 'aria-label': title});
        const notice = h('div', {class: 'news'});
        const count = h('span', {class: 'count'});
        const keys = roving(list, 'a.file');
        return {
            element: h('section', {}, h('h2', {}, title, count), notice, list),
            async reload() {
                try {
                    const {rows, total} = await load();
                    put(list, rows.map(row));
                    put(notice, total === 0 ? none() : null);
                    count.textContent = total > 0 ? number(total) : '';
                    keys.settle();
                } catch (error) {
                    put(notice, h('p', {class: 'error'}, t('failed', error.message)));
                }
            },
        };
    };
    const ofKinds = (kinds) => async () => {
        const answers = await Promise.all(kinds.map((kind) => api.get('/api/objects' + api.query({Kind: kind, Limit: most}))));
        return {
            rows: answers.flatMap((answer) => answer.Objects).sort((a, b) => b.Object - a.Object),
            total: answers.reduce((sum, answer) => sum + answer.Total, 0),
        };
    };
    const parts = [
        part(t('uploads'), async () => {
            const {Uploads} = await api.get('/api/uploads');
            return {rows: Uploads, total: Uploads.length};
        }, uploadRow, () => empty(app, t('uploadsEmpty'), tries.upload(app))),
        part(t('slices'), ofKinds(['VideoSlice', 'VideoSliceData']), objectRow, () => empty(app, t('slicesEmpty'))),
        part(t('fileObjects'), ofKinds(['File', 'FileData']), objectRow, () => empty(app, t('filesEmpty'))),
    ];
    const reload = () => {
        due = null;
        parts.forEach((each) => each.reload());
    };
    return {
        element: h('div', {class: 'view'}, heading(t('files')), parts.map((each) => each.element)),
        show: reload,
        events(events, {missed}) {
            const touched = missed || events.some((event) => event.Type === 'upload' ||
                (event.Type === 'object' && /^(VideoSlice|File)(Data)?$/.test(event.Kind)));
            if (touched) {
                due = due || setTimeout(reload, 700);
            }
        },
        close: () => clearTimeout(due),
    };
}
