// node expressions.mjs PROGRAM [CASES]: computes the expressions of expressions.txt by this program and by the
// grammar's own implementation, and names every one whose values differ. Exit 0 when those are just the ones
// that begin with "differs:", which says that they are meant to.
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { execFileSync } from 'node:child_process';
import * as vega from 'vega';
import * as vegaLite from 'vega-lite';

const kRows = [
  { i: 1, a: 3, b: null, s: 'abc', e: '', z: 0, t: true, d: null, q: null },
  { i: 2, a: -2.5, b: 5, c: 7, s: '3', e: 'x y', z: 1, t: false, d: '2020-03-01T00:00:00', q: 'w' },
  { i: 3, a: 0, b: -1, c: null, s: null, e: '12', z: 2, t: null, d: '2021-12-31T12:30:00', q: 'v' },
];
const kMeant = 'differs: ';

const [program, cases = new URL('expressions.txt', import.meta.url)] = process.argv.slice(2);
const silent = { level: () => silent, error: (e) => { throw e; }, warn: () => silent, info: () => silent, debug: () => silent };
const work = fs.mkdtempSync(path.join(os.tmpdir(), 'expressions-'));
const file = path.join(work, 'case.vl.json');

const makeDocument = (expression) => ({
  data: { values: kRows, format: { parse: { d: 'date' } } },
  transform: [{ calculate: expression, as: 'r' }, { calculate: 'isValid(datum.r)', as: 'v' }],
  mark: { type: 'point', tooltip: { content: 'data' } },
  encoding: { x: { field: 'i', type: 'quantitative' } },
});

// What is no value, as NaN, has no text here, and dates are milliseconds, as which they count there.
function describe(value) {
  const plain = value instanceof Date ? Number(value) : value;
  return plain === null || plain === undefined || Number.isNaN(plain) ? '-' : String(plain);
}

async function computeTheirs(expression) {
  const view = new vega.View(vega.parse(vegaLite.compile(makeDocument(expression), { logger: silent }).spec),
                             { renderer: 'none', logger: silent });
  await view.runAsync();
  const names = Object.keys(view.getState({ data: () => true }).data);
  const rows = names.map((name) => view.data(name)).find((data) => data.length > 0 && 'r' in data[0]);
  return rows.map((row) => describe(row.r));
}

const unescape = (text) => text.replaceAll('&lt;', '<').replaceAll('&gt;', '>').replaceAll('&amp;', '&');

function readTooltip(text) {
  const field = (name) => text.split('\n').find((line) => line.startsWith(`${name}: `))?.slice(3);
  if (field('v') !== 'true') return '-';
  const value = unescape(field('r') ?? '');
  const isDate = /^\d{4}-\d\d-\d\d(T[\d:.]+)?$/.test(value);
  return isDate ? String(Date.parse(value.includes('T') ? `${value}Z` : value)) : value;
}

function computeOurs(expression) {
  fs.writeFileSync(file, JSON.stringify(makeDocument(expression)));
  const svg = execFileSync(program, ['render', file, '-o', '-'], { stdio: ['ignore', 'pipe', 'pipe'] }).toString();
  return [...svg.matchAll(/<title>([^<]*)<\/title>/g)].map((match) => readTooltip(match[1]));
}

async function attempt(compute) {
  try {
    return (await compute()).join(' | ');
  } catch (error) {
    return 'error: ' + String(error.stderr ?? error.message).trim().split('\n')[0].replace(/.*?vl\.json: /, '');
  }
}

const totals = { same: 0, meant: 0, unexpected: 0 };
const lines = fs.readFileSync(cases, 'utf8').split('\n').filter((line) => line.trim() && !line.startsWith('#'));
for (const line of lines) {
  const isMeant = line.startsWith(kMeant);
  const expression = isMeant ? line.slice(kMeant.length) : line;
  const ours = await attempt(() => computeOurs(expression));
  const theirs = await attempt(() => computeTheirs(expression));
  const isSame = ours === theirs;
  if (isSame !== isMeant) ++totals[isSame ? 'same' : 'meant'];
  else {
    ++totals.unexpected;
    console.log(`${isMeant ? 'AGREES ' : 'DIFFERS'} ${expression.padEnd(36)} ${ours}   for   ${theirs}`);
  }
}
fs.rmSync(work, { recursive: true });
console.log(`${totals.same} agree, ${totals.meant} differ as they are meant to, ${totals.unexpected} unexpected`);
process.exitCode = totals.unexpected === 0 ? 0 : 1;
