// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// The file server of nginx.conf.in: keeps what was PUT and answers with the link to fetch it from.
import fs from 'fs';

function token(r) {
    return r.variables.request_id; // 16 random bytes in hexadecimal digits
}

function put(r) {
    if (r.method !== 'PUT') {
        r.return(405);
        return;
    }
    const name = r.variables.request_uri.split('/').pop();
    const id = token(r);
    const kept = `${r.variables.folder}/${id}`;
    if (r.variables.request_body_file) {
        fs.renameSync(r.variables.request_body_file, kept);
    } else {
        fs.writeFileSync(kept, '');
    }
    r.return(201, `${r.variables.scheme}://${r.headersIn.Host}${r.variables.prefix}/${id}/${name}\n`);
}

export default {put};
