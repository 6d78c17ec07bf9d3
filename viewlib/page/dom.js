/* SPDX-License-Identifier: Apache-2.0 */
/* Elements. Text goes in as text alone, so that nothing that came over the wire can become markup. */

const svgNamespace = 'http://www.w3.org/2000/svg';

function append(element, children) {
    for (const child of children.flat(Infinity)) {
        if (child !== null && child !== undefined && child !== false) {
            element.append(child instanceof Node ? child : String(child));
        }
    }
    return element;
}

function setAll(element, properties) {
    for (const [name, value] of Object.entries(properties || {})) {
        if (value === null || value === undefined || value === false) {
            continue;
        }
        if (name.startsWith('on')) {
            element.addEventListener(name.slice(2), value);
        } else if (name === 'place') {
            Object.entries(value).forEach(([key, text]) => element.style.setProperty(key, text));
        } else if (name === 'value') {
            element.value = value;
        } else {
            element.setAttribute(name, value === true ? '' : value);
        }
    }
}

/* h('a', {class: 'x', href: '#/', onclick: f}, 'text', child, [children]) */
export function h(tag, properties, ...children) {
    const element = document.createElement(tag);
    append(element, children);
    setAll(element, properties);
    return element;
}

export function s(tag, properties, ...children) {
    const element = document.createElementNS(svgNamespace, tag);
    setAll(element, properties);
    return append(element, children);
}

export function put(element, ...children) {
    element.replaceChildren();
    return append(element, children);
}

const icons = {
    live: 'M3 12h4l3 7 4-14 3 7h4',
    devices: 'M4 7h11a2 2 0 0 1 2 2v7a2 2 0 0 1-2 2H4a2 2 0 0 1-2-2V9a2 2 0 0 1 2-2zM17 11l5-3v9l-5-3',
    objects: 'M4 8V5a1 1 0 0 1 1-1h3M16 4h3a1 1 0 0 1 1 1v3M20 16v3a1 1 0 0 1-1 1h-3M8 20H5a1 1 0 0 1-1-1v-3' +
        'M12 7.5a2.5 2.5 0 1 1 0 5 2.5 2.5 0 0 1 0-5zM7.5 17c.6-2 2.3-3 4.5-3s3.9 1 4.5 3',
    files: 'M14 3H7a2 2 0 0 0-2 2v14a2 2 0 0 0 2 2h10a2 2 0 0 0 2-2V8zM14 3v5h5M9 13h6M9 17h4',
    exchanges: 'M4 8h15M15 4l4 4-4 4M20 16H5M9 12l-4 4 4 4',
    faults: 'M12 4 2.5 20h19zM12 10v4M12 17.2v.1',
    close: 'M6 6l12 12M18 6 6 18',
    back: 'M15 5l-7 7 7 7',
    next: 'M9 5l7 7-7 7',
    pause: 'M8 5v14M16 5v14',
    play: 'M7 5l12 7-12 7z',
    download: 'M12 4v11M7 11l5 5 5-5M5 20h14',
    bin: 'M4 7h16M9 7V4h6v3M6 7l1 13h10l1-13',
    note: 'M12 3a9 9 0 1 1 0 18 9 9 0 0 1 0-18zM12 8v5M12 16v.1',
    clock: 'M12 3a9 9 0 1 1 0 18 9 9 0 0 1 0-18zM12 7v5l3.5 2',
    copy: 'M9 9h10v11H9zM5 15V4h10',
};

export function icon(name) {
    return s('svg', {class: 'icon', viewBox: '0 0 24 24', 'aria-hidden': 'true'}, s('path', {d: icons[name]}));
}

/* One stop for the tabulator key in a list; the arrow keys, Home and End move within. */
export function roving(container, selector) {
    const items = () => [...container.querySelectorAll(selector)];
    const select = (item) => {
        items().forEach((other) => { other.tabIndex = other === item ? 0 : -1; });
    };
    const above = (all, at, step) => {
        const from = all[at].getBoundingClientRect();
        for (let i = at + step; all[i]; i += step) {
            const to = all[i].getBoundingClientRect();
            const otherRow = Math.abs(to.top - from.top) > from.height / 2;
            if (otherRow && to.left < from.right - 1 && to.right > from.left + 1) {
                return all[i];
            }
        }
        return null;
    };
    container.addEventListener('focusin', (event) => {
        const item = event.target.closest(selector);
        if (item) {
            select(item);
        }
    });
    container.addEventListener('keydown', (event) => {
        const all = items();
        const at = all.indexOf(event.target.closest(selector));
        if (at < 0 || event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        const target = {
            ArrowDown: () => above(all, at, 1), ArrowUp: () => above(all, at, -1),
            ArrowRight: () => all[at + 1], ArrowLeft: () => all[at - 1],
            Home: () => all[0], End: () => all[all.length - 1],
        }[event.key];
        if (target) {
            event.preventDefault();
            const item = target();
            if (item) {
                item.focus();
            }
        }
    });
    return {
        /* To be called when the list has changed. */
        settle() {
            const all = items();
            if (all.length > 0 && !all.some((item) => item.tabIndex === 0 && item.hasAttribute('tabindex'))) {
                select(all[0]);
            } else {
                all.filter((item) => !item.hasAttribute('tabindex')).forEach((item) => { item.tabIndex = -1; });
            }
        },
    };
}

/* Spoken by a screen reader; never more than one sentence in ten seconds. */
let spoken = 0;
let waiting = null;
export function announce(text, urgent = false) {
    const region = document.getElementById('announce');
    const speak = () => {
        spoken = Date.now();
        waiting = null;
        region.textContent = text;
    };
    clearTimeout(waiting);
    waiting = urgent ? speak() : setTimeout(speak, Math.max(0, spoken + 10000 - Date.now()));
}
