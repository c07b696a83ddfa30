// Applies the problem matcher of docs/editors.md to what bkdoc tells, and looks whether the words stand where it says.
// node problem_matcher.js PAGE TOOL FOLDER: with the file sample.bkd of problem_words in the folder.

'use strict';
const assert = require('assert');
const fs = require('fs');
const path = require('path');
const { spawnSync } = require('child_process');

const [page, tool, folder] = process.argv.slice(2);
const block = /```json\n([^]*?)```/.exec(fs.readFileSync(page, 'utf8'))[1];
const task = JSON.parse(block).tasks[0];
const pattern = task.problemMatcher.pattern;

const lines = ['a 1 @ 2', '\tb "äöü 桥" 1E5', 'c 12ab'];
fs.writeFileSync(path.join(folder, 'sample.bkd'), lines.join('\n') + '\n');
const run = spawnSync(tool, task.args, { cwd: folder, encoding: 'utf8' });

const found = [];
for (const line of run.stdout.split('\n')) {
    const match = new RegExp(pattern.regexp).exec(line);
    if (match !== null) {
        const [row, column] = [Number(match[pattern.line]), Number(match[pattern.column])];
        found.push([match[pattern.file], match[pattern.severity], match[pattern.code], match[pattern.message].length > 5,
            lines[row - 1].slice(column - 1)]);
    }
}
assert.deepStrictEqual(found, [
    ['sample.bkd', 'error', 'unexpected-word', true, '@ 2'],
    ['sample.bkd', 'warning', 'exponent-ignored', true, '1E5'],
    ['sample.bkd', 'warning', 'text-after-number', true, 'ab'],
]);
