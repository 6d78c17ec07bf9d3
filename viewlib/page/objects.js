/* SPDX-License-Identifier: Apache-2.0 */
/* What is stored: a grid of objects with their pictures, and one of them with its box in the scene. */
import * as api from './api.js';
import {h, icon, put, s} from './dom.js';
import {badge, deviceList, empty, filterBar, heading, pagedList, pageSize, place, split, tries} from './parts.js';
import {bytes, clockTime, fullTime, kindName, kindNames, meaning, t, wireTime} from './text.js';

export const notesText = (notes) => (notes.length === 1 ? t('oneNote') : t('notesCount', notes.length));

/* The picture that shows the object best: its own crop before the scene. */
function portrait(pictures) {
    const scenes = ['14', '100', ''];
    return [...pictures].sort((a, b) => scenes.indexOf(a.Type) - scenes.indexOf(b.Type))[0] || null;
}

const pictured = /^(Image|Face|Person|MotorVehicle|NonMotorVehicle|Thing|Scene)$/;

function card(object, fields) {
    const picture = portrait(object.Pictures);
    return h('a', {class: 'tile card', href: place('objects', object.Object, fields)},
        h('span', {class: `thumb kind-${object.Kind}`}, picture
            ? h('img', {src: api.pictureUrl(picture.Picture), alt: '', loading: 'lazy', decoding: 'async'}) : icon(pictured.test(object.Kind) ? 'objects' : 'files')),
        h('span', {class: 'tile-text'},
            h('span', {class: 'line'}, h('strong', {}, kindName(object.Kind)),
                object.Notes.length > 0 ? badge(notesText(object.Notes), 'warn') : null),
            h('code', {class: 'id', title: object.Id}, object.Id || '–'),
            h('span', {class: 'below'}, h('time', {title: fullTime(object.Received)}, clockTime(object.Received)))));
}

/* Boxes as wide as they are sent, in pixels of the picture; the largest lie undermost, so that each can be reached. */
function overlay(scene, boxes, chosen) {
    const area = ({Box}) => (Box.RightBtmX - Box.LeftTopX) * (Box.RightBtmY - Box.LeftTopY);
    const sorted = [...boxes].sort((a, b) => (a.Object === chosen) - (b.Object === chosen) || area(b) - area(a));
    const rect = ({Box}, kind) => s('rect', {
        class: kind, x: Box.LeftTopX, y: Box.LeftTopY, width: Box.RightBtmX - Box.LeftTopX,
        height: Box.RightBtmY - Box.LeftTopY,
    });
    const shapes = sorted.map((object) => s('g', {class: `box kind-${object.Kind}${object.Object === chosen ? ' chosen' : ''}`},
        rect(object, 'halo'), rect(object, 'line')));
    return s('svg', {
        class: 'boxes', viewBox: `0 0 ${scene.Width} ${scene.Height}`, preserveAspectRatio: 'none', 'aria-hidden': 'true',
    }, shapes);
}

function tag(scene, object, chosen) {
    const percent = (value, whole) => `${Math.min(100, Math.max(0, 100 * value / whole))}%`;
    const low = object.Box.LeftTopY < scene.Height * 0.06;
    return h('a', {
        class: `tag kind-${object.Kind}${object.Object === chosen ? ' chosen' : ''}${low ? ' inside' : ''}`,
        href: place('objects', object.Object, {}), title: object.Id, 'aria-current': object.Object === chosen ? 'true' : null,
        place: {left: percent(object.Box.LeftTopX, scene.Width), top: percent(object.Box.LeftTopY, scene.Height)},
    }, kindName(object.Kind));
}

const hasBox = ({Box}) => Box && ['LeftTopX', 'LeftTopY', 'RightBtmX', 'RightBtmY'].every((key) => Number.isFinite(Box[key])) &&
    Box.RightBtmX > Box.LeftTopX && Box.RightBtmY > Box.LeftTopY;
const outside = (scene, {Box}) => Box.LeftTopX < 0 || Box.LeftTopY < 0 || Box.RightBtmX > scene.Width || Box.RightBtmY > scene.Height;

/* Each object once: one that was posted again stands for its earlier posts, but for the one that is looked at. */
function newestOf(siblings, chosen) {
    const newest = new Map();
    for (const object of siblings) {
        const key = `${object.Kind} ${object.Id}`;
        const other = newest.get(key);
        if (!other || object.Object === chosen || (other.Object !== chosen && object.Object > other.Object)) {
            newest.set(key, object);
        }
    }
    return [...newest.values()];
}

function figure(object) {
    const scene = object.Scene;
    const holder = h('figure', {class: 'scene'});
    if (!scene) {
        const picture = portrait(object.Pictures);
        const boxed = hasBox(object) ? h('figcaption', {}, t('noScene')) : null;
        return picture ? put(holder, h('img', {src: api.pictureUrl(picture.Picture), alt: t('pictureAlt', kindName(object.Kind), object.Id)}), boxed)
            : h('div', {class: 'no-picture'}, icon('objects'), h('p', {}, t('noPicture')));
    }
    const siblings = newestOf([object, ...object.Siblings], object.Object).filter(hasBox);
    const image = h('img', {src: api.pictureUrl(scene.Picture), alt: t('sceneAlt', object.Id, siblings.length)});
    const draw = () => {
        const size = {Width: scene.Width || image.naturalWidth, Height: scene.Height || image.naturalHeight};
        if (size.Width > 0 && size.Height > 0) {
            const frame = h('div', {class: 'frame-of-scene', place: {'aspect-ratio': `${size.Width} / ${size.Height}`,
                '--natural-width': `${size.Width}px`, '--ratio': String(size.Width / size.Height)}},
                image, overlay(size, siblings, object.Object), siblings.map((other) => tag(size, other, object.Object)));
            put(holder, frame, hasBox(object) && outside(size, object) ? h('figcaption', {}, `${t('box')}: ${t('outside')}`) : null);
        }
    };
    put(holder, image);
    if (scene.Width && scene.Height) {
        draw();
    } else {
        image.addEventListener('load', draw, {once: true});
    }
    return holder;
}

function value(key, item) {
    if (item === '') {
        return h('span', {class: 'muted'}, '""');
    }
    const text = typeof item === 'string' ? item : JSON.stringify(item);
    const hint = meaning(key, item) || (/Time$/.test(key) && /^\d{14}$/.test(text) ? wireTime(text) : null);
    return [h('span', {class: typeof item === 'string' ? 'text' : 'literal'}, text), hint && h('span', {class: 'hint'}, hint)];
}

/* Members of members stand indented under them. */
export function memberRows(members, depth = 0) {
    return Object.entries(members).flatMap(([key, item]) => {
        const nested = item !== null && typeof item === 'object';
        const many = Array.isArray(item);
        const name = h('th', {scope: 'row', class: `depth-${Math.min(depth, 5)}`}, many || !Array.isArray(members) ? key : `[${key}]`);
        if (!nested || depth > 8) {
            return [h('tr', {}, name, h('td', {}, value(key, item)))];
        }
        return [h('tr', {class: 'group'}, name, h('td', {class: 'muted'}, many ? `[${item.length}]` : '')), ...memberRows(item, depth + 1)];
    });
}

function memberTable(object) {
    if (!object.Members || Object.keys(object.Members).length === 0) {
        return h('p', {class: 'muted'}, t('noMembers'));
    }
    return h('table', {class: 'members'}, h('thead', {class: 'unseen'}, h('tr', {}, h('th', {}, t('member')), h('th', {}, t('value')))),
        h('tbody', {}, memberRows(object.Members)));
}

const fact = (name, ...content) => h('div', {}, h('dt', {}, t(name)), h('dd', {}, content));

function strip(object) {
    const scene = object.Scene && object.Scene.Picture;
    const others = object.Pictures.filter(({Picture}) => Picture !== scene);
    return others.length === 0 ? null : h('section', {}, h('h3', {}, t('pictures')), h('ul', {class: 'strip'}, others.map((picture) =>
        h('li', {}, h('a', {href: api.pictureUrl(picture.Picture), target: '_blank', rel: 'noopener'},
            h('img', {src: api.pictureUrl(picture.Picture), alt: '', loading: 'lazy'}),
            h('span', {}, [meaning('Type', picture.Type) || picture.Type, picture.Width ? `${picture.Width}×${picture.Height}` : '']
                .filter(Boolean).join(' · ')))))));
}

export function objectDetail(object) {
    const notes = object.Notes.length === 0 ? h('p', {class: 'good-note'}, t('conform'))
        : h('ul', {class: 'notes'}, object.Notes.map((note) => h('li', {}, icon('note'), h('span', {}, note))));
    return h('div', {class: 'object-detail'},
        h('div', {class: 'pictures'}, figure(object), strip(object)),
        h('div', {class: 'facts-of'},
            h('p', {class: 'full-id'}, h('code', {}, object.Id || '–')),
            h('dl', {class: 'grid-facts'},
                fact('device', object.Device ? h('code', {}, object.Device) : t('noDevice')),
                fact('received', fullTime(object.Received)), fact('path', h('code', {}, object.Path)), fact('size', bytes(object.Bytes))),
            object.Exchange ? h('p', {}, h('a', {href: `#/exchanges/${object.Exchange}`}, t('showExchange'))) : null,
            h('h3', {}, t('notes')), notes, h('h3', {}, t('members')), memberTable(object)));
}

export function objectsView(app) {
    let fields = {};
    const load = async (before) => {
        const answer = await api.get('/api/objects' + api.query({...fields, Before: before, Limit: pageSize}));
        return {rows: answer.Objects, total: answer.Total};
    };
    const list = pagedList(app, {
        load, row: (object) => card(object, fields), key: (object) => object.Object, selector: 'a.tile', label: t('objects'), kind: 'objects',
        none: () => (Object.keys(fields).length > 0 ? empty(app, t('nothingFits')) : empty(app, t('objectsEmpty'), tries.tour(app))),
    });
    const filters = filterBar([
        {name: 'Kind', label: t('kind'), type: 'select', options: [['', t('anyKind')], ...kindNames.map((name) => [name, kindName(name)])]},
        {name: 'Device', label: t('device'), list: 'known-devices'},
        {name: 'Id', label: t('identifier')},
        {name: 'Notes', label: t('withNotes'), type: 'check'},
    ], (values) => app.go(place('objects', null, values)));
    let name = '';
    const panes = split(list, {
        title: () => name, home: () => place('objects', null, fields),
        async open(id) {
            name = t('objects');
            const object = await api.get(`/api/objects/${encodeURIComponent(id)}`);
            name = kindName(object.Kind);
            return objectDetail(object);
        },
    });
    let loaded = null;
    return {
        element: h('div', {class: 'view wide'}, heading(t('objects')), filters.element, deviceList(), panes.element),
        show({id, fields: given}) {
            const key = JSON.stringify(given);
            if (loaded !== key && (id === null || loaded === null)) {
                fields = given;
                loaded = key;
                filters.set(fields);
                list.reload();
            }
            panes.show(id);
        },
        events(events, {first, missed}) {
            if (missed) {
                list.reload();
                return;
            }
            const mine = first ? [] : events.filter((event) => event.Type === 'object' && (!fields.Kind || event.Kind === fields.Kind) &&
                (!fields.Device || event.Device === fields.Device));
            if (mine.length > 0) {
                list.offer(mine.length);
            }
        },
        escape() {
            if (panes.shown !== null) {
                app.go(place('objects', null, fields));
            }
        },
    };
}
