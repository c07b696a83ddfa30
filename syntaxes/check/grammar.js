// Tokenizes documents by the TextMate grammar, and compares what it takes for names and values with what bkdoc reads.
// node grammar.js MODULES TOOL FILE...: the folder of the installed packages, the tool, and documents.

'use strict';
const fs = require('fs');
const path = require('path');
const { spawnSync } = require('child_process');

const [modules, tool, ...files] = process.argv.slice(2);
const oniguruma = require(path.join(modules, 'vscode-oniguruma'));
const textmate = require(path.join(modules, 'vscode-textmate'));
const grammarFile = path.join(__dirname, '..', 'bkd.tmLanguage.json');

async function loadGrammar() {
    const wasm = fs.readFileSync(path.join(modules, 'vscode-oniguruma', 'release', 'onig.wasm'));
    await oniguruma.loadWASM(wasm);
    const registry = new textmate.Registry({
        onigLib: Promise.resolve({
            createOnigScanner: (patterns) => new oniguruma.OnigScanner(patterns),
            createOnigString: (text) => new oniguruma.OnigString(text),
        }),
        loadGrammar: async () => textmate.parseRawGrammar(fs.readFileSync(grammarFile, 'utf8'), grammarFile),
    });
    return registry.loadGrammar('source.bkd');
}

/// Each token that is no blank, with its innermost scope.
function tokensOf(grammar, text) {
    const tokens = [];
    let state = textmate.INITIAL;
    for (const line of text.split(/\r\n|\n|\r/)) {
        const result = grammar.tokenizeLine(line, state);
        for (const token of result.tokens) {
            const word = line.slice(token.startIndex, token.endIndex);
            if (word.trim() !== '') {
                tokens.push([word, token.scopes[token.scopes.length - 1].replace(/\.bkd$/, '')]);
            }
        }
        state = result.ruleStack;
    }
    return tokens;
}

const kinds = {
    'entity.name.tag': 'entries',
    'entity.name.function': 'entries',
    'keyword.other': 'entries',
    'punctuation.section.group.begin': 'groups',
    'constant.language.boolean': 'bools',
    'constant.numeric.int': 'ints',
    'constant.numeric.double': 'doubles',
    'constant.other.binary': 'data',
    'punctuation.definition.string.begin': 'strings',
};

function countsOf(tokens) {
    const counts = {};
    let before = '';
    for (const [, scope] of tokens) {
        const kind = kinds[scope];
        if (kind !== undefined && !(kind === 'strings' && before === 'keyword.control.include')) {
            counts[kind] = (counts[kind] || 0) + 1;
        }
        before = scope;
    }
    return counts;
}

/// What the tool says of a document without errors; null of another one.
function countsByTool(file) {
    const run = spawnSync(tool, ['info', '--no-includes', '--no-config', file], { encoding: 'utf8' });
    if (run.status !== 0 || /: (error|warning): /.test(run.stderr)) {
        return null;
    }
    const counts = {};
    const entries = Number(/^entries +([0-9,]+)/m.exec(run.stdout)[1].replace(/,/g, ''));
    if (entries !== 0) {
        counts.entries = entries;
    }
    const values = /^values +[0-9,]+ +\((.*)\)$/m.exec(run.stdout);
    for (const part of values === null ? [] : values[1].split(/, (?=[0-9])/)) {
        const [number, kind] = part.split(' ');
        const plural = kind === 'data' || kind.endsWith('s') ? kind : kind + 's';
        counts[plural] = Number(number.replace(/,/g, ''));
    }
    return counts;
}

function sorted(counts) {
    return JSON.stringify(Object.entries(counts).sort());
}

let failures = 0;
function fail(message) {
    console.error(message);
    ++failures;
}

function checkFile(grammar, file) {
    if (fs.readFileSync(file).subarray(0, 4).equals(Buffer.from('KWBF'))) {
        return false; // enciphered
    }
    const expected = countsByTool(file);
    const tokens = tokensOf(grammar, fs.readFileSync(file, 'utf8'));
    if (expected === null) {
        return false;
    }
    for (const [word, scope] of tokens) {
        if (scope === 'source' || scope.startsWith('invalid')) {
            fail(`${file}: '${word}' is ${scope}`);
        }
    }
    const found = countsOf(tokens);
    if (sorted(found) !== sorted(expected)) {
        fail(`${file}: the grammar counts ${sorted(found)}, the tool ${sorted(expected)}`);
    }
    return true;
}

function checkSample(grammar) {
    const sample = fs.readFileSync(path.join(__dirname, 'sample.bkd'), 'utf8');
    const found = tokensOf(grammar, sample).map(([word, scope]) => `${word}\t${scope}`).join('\n') + '\n';
    const expected = fs.readFileSync(path.join(__dirname, 'sample.scopes'), 'utf8');
    if (found !== expected) {
        fail(`sample.bkd has other scopes than sample.scopes:\n${found}`);
    }
}

/// A document of all kinds of words in an order that a seed decides.
function randomDocument(seed) {
    let state = seed;
    const below = (limit) => {
        state = (Math.imul(state, 1103515245) + 12345) >>> 0;
        return (state >>> 8) % limit;
    };
    const pick = (list) => list[below(list.length)];
    const values = ['yes', 'no', '12', '-3', '+7', '1.5', '-.25', '1e5', '2.', '"oak"', '""', '"a // b"', '"x\\"y"',
        '"\\n"', '"#include"', '"äö {"', '0x01FF00010000'];
    const names = ['a', 'yesterday', 'no_1', 'inferior', 'nano', 'e5', 'x.y', '_z', 'A1'];
    let text = '#Brellwick_Serial_Version 1.2\n';
    let depth = 0;
    for (let i = 0; i < 300; ++i) {
        const name = pick(names);
        const head = pick([name, name, '#' + name.replace('.', ''), name + '<' + pick(names) + '>', name + '[]']);
        const row = Array.from({ length: 1 + below(4) }, () => pick(values)).join(pick([' ', ', ', '\t', ' ,']));
        text += pick(['', ' ', '    ']);
        switch (below(8)) {
        case 0:
            text += `${head} {`;
            ++depth;
            break;
        case 1:
            text += `${name}(${row})`;
            break;
        case 2:
            text += `${name} <empty>`;
            break;
        case 3:
            text += `${head} ${row} {`;
            ++depth;
            break;
        default:
            text += head + pick([' ', ' = ', '=']) + row;
        }
        for (; depth > 0 && below(3) === 0; --depth) {
            text += pick([' }', '\n}']);
        }
        text += pick(['\n', '\n', ' // "note" { yes\n', ' ']);
    }
    return text + ' }'.repeat(depth) + '\n';
}

async function main() {
    const grammar = await loadGrammar();
    checkSample(grammar);
    const clean = files.filter((file) => checkFile(grammar, file)).length;
    const scratch = fs.mkdtempSync(path.join(require('os').tmpdir(), 'bkd_grammar_'));
    let random = 0;
    for (let seed = 1; seed <= 200; ++seed) {
        const file = path.join(scratch, `${seed}.bkd`);
        fs.writeFileSync(file, randomDocument(seed));
        random += checkFile(grammar, file) ? 1 : 0;
        fs.rmSync(file);
    }
    fs.rmdirSync(scratch);
    if (clean < 10 || random < 100) {
        fail(`only ${clean} files and ${random} random documents are without errors`);
    }
    console.log(`the grammar agrees with the tool on ${clean} files and ${random} random documents`);
    process.exit(failures === 0 ? 0 : 1);
}

main();
