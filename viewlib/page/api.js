/* SPDX-License-Identifier: Apache-2.0 */
/* The server's control interface. Every call gives the JSON that was answered, or throws an ApiError. */

export class ApiError extends Error {
    constructor(text, status) {
        super(text);
        this.status = status;
    }
}

async function call(method, path, body, signal) {
    const headers = {Accept: 'application/json'};
    if (method !== 'GET') {
        headers['X-Viewlibd'] = '1';
    }
    if (body !== undefined) {
        headers['Content-Type'] = 'application/json';
    }
    const answer = await fetch(path, {method, headers, signal, body: body === undefined ? undefined : JSON.stringify(body)});
    const text = await answer.text();
    let json = null;
    try {
        json = text === '' ? {} : JSON.parse(text);
    } catch {
        throw new ApiError(`HTTP ${answer.status}: ${text.slice(0, 200)}`, answer.status);
    }
    if (!answer.ok) {
        throw new ApiError(json.error || `HTTP ${answer.status}`, answer.status);
    }
    return json;
}

export const get = (path, signal) => call('GET', path, undefined, signal);
export const post = (path, body) => call('POST', path, body);
export const put = (path, body) => call('PUT', path, body);
export const remove = (path) => call('DELETE', path);

/* The fields that are set, as a query; "" when there are none. */
export function query(fields) {
    const set = Object.entries(fields).filter(([, value]) => value !== '' && value !== null && value !== undefined);
    return set.length === 0 ? '' : '?' + new URLSearchParams(set).toString();
}

export const pictureUrl = (number) => `/api/pictures/${number}`;
