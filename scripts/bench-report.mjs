// Makes tables of the benchmarks' measurements.
//
//   node scripts/bench-report.mjs table <result to write> <records> <measurements>...
//   node scripts/bench-report.mjs growth <result>...
//
// `table` joins files of measurements, either Google Benchmark's own output or an array of rows
// { what, ours, floor, target, unit, elapsed? }, to one result and prints it. `growth` prints the
// results of several sizes side by side. Both print Markdown. A missed target is reported; it does not
// change the status, which is 0.

import { readFileSync, writeFileSync } from 'node:fs';

const read = (path) => JSON.parse(readFileSync(path, 'utf8'));

/**
 * The rows of Google Benchmark's medians of "<what>/ours" and "<what>/floor" (the baseline), in the
 * order of registration. A call has one thread and reads cached pages, so it waits only for a
 * processor. Processor time therefore measures it, however busy the machine is. Wall-clock time is
 * kept beside it as `elapsed`.
 */
function rowsOfBenchmarks(benchmarks) {
  const medians = benchmarks
    .filter(({ aggregate_name }) => aggregate_name === 'median')
    .sort((left, right) => left.family_index - right.family_index);
  const rows = new Map();
  for (const { run_name, cpu_time, real_time, time_unit, target, isOfRange } of medians) {
    // What follows the side are the settings of the run. A name may contain slashes itself.
    const { what, side } = /^(?<what>.+)\/(?<side>ours|floor)(\/|$)/.exec(run_name).groups;
    if (!rows.has(what)) {
      rows.set(what, { what, target, isOfRange: isOfRange === 1, unit: time_unit, elapsed: {} });
    }
    rows.get(what)[side] = cpu_time;
    rows.get(what).elapsed[side] = real_time;
  }
  return [...rows.values()];
}

function rowsOf(document) {
  return Array.isArray(document) ? document : rowsOfBenchmarks(document.benchmarks);
}

/** The machine and the time of the measurement, as far as Google Benchmark reports them. */
function circumstances(documents) {
  const context = documents.find((document) => document.context)?.context ?? {};
  const { date, num_cpus, mhz_per_cpu, load_avg } = context;
  return { date, num_cpus, mhz_per_cpu, load_avg };
}

const ratioOf = ({ ours, floor }) => (floor === null ? null : ours / floor);
const isWithin = ({ ours, ratio, target }) => (ratio ?? ours) <= target;

function number(value) {
  const digits = value < 10 ? 2 : value < 100 ? 1 : 0;
  return value.toFixed(digits);
}

const none = '–';
const quantity = (value, unit) => (value === null ? none : `${number(value)} ${unit}`);
const factor = (value) => (value === null ? none : `${value.toFixed(2)} x`);

/** Markdown that also reads well where it is not rendered. */
function markdown(heads, lines) {
  const widths = heads.map((head, column) =>
    Math.max(head.length, ...lines.map((line) => line[column].length)),
  );
  const padded = (text, column) =>
    column === 0 ? text.padEnd(widths[column]) : text.padStart(widths[column]);
  const joined = (cells) => `| ${cells.join(' | ')} |`;
  const rule = widths.map((width, column) =>
    column === 0 ? '-'.repeat(width) : `${'-'.repeat(width - 1)}:`,
  );
  return [joined(heads.map(padded)), joined(rule), ...lines.map((line) => joined(line.map(padded)))]
    .join('\n');
}

function targetText({ floor, target, unit }) {
  if (target === null) return none;
  return floor === null ? `${target} ${unit}` : `${target} x`;
}

function line(row) {
  const { what, ours, floor, ratio, target, unit } = row;
  const verdict = target === null ? none : isWithin(row) ? 'within' : 'above';
  const figures = [quantity(ours, unit), quantity(floor, unit), factor(ratio), targetText(row)];
  return [what, ...figures, verdict];
}

const recordsOfTargets = 3_000_000;

function table(resultPath, records, paths) {
  const documents = paths.map(read);
  const rows = documents.flatMap(rowsOf).map(({ what, ours, floor, ...rest }) => {
    return { what, ours, floor, ratio: ratioOf({ ours, floor }), ...rest };
  });
  const result = { records: Number(records), ...circumstances(documents), rows };
  writeFileSync(resultPath, `${JSON.stringify(result, null, 2)}\n`);

  const judged = rows.filter(({ target }) => target !== null);
  const within = judged.filter(isWithin);
  console.log(`\n${result.records.toLocaleString('en')} records\n`);
  console.log(markdown(['what', 'ours', 'baseline', 'ratio', 'target', ''], rows.map(line)));
  console.log(`\n${within.length} of ${judged.length} within their targets (${resultPath})`);
  if (result.records !== recordsOfTargets) {
    const size = recordsOfTargets.toLocaleString('en');
    console.log(`The targets are for ${size} records. With fewer records, the fixed cost of a call weighs more.`);
  }
}

const mostRise = 1.25;

/** The largest factor by which a value exceeds one that comes before it. */
function riseOf(values) {
  let least = Infinity;
  let rise = 0;
  for (const value of values) {
    least = Math.min(least, value);
    rise = Math.max(rise, value / least);
  }
  return rise;
}

/**
 * A call about a range of days must not take longer in a longer history. Any other call is compared
 * with its baseline, which grows with the history as well.
 */
function growth(paths) {
  const results = paths.map(read).sort((left, right) => left.records - right.records);
  const lines = results[0].rows.map(({ what, isOfRange, target }) => {
    const rows = results.map((result) => result.rows.find((row) => row.what === what));
    if (isOfRange) {
      const rise = riseOf(rows.map(({ ours }) => ours));
      const figures = rows.map(({ ours, unit }) => quantity(ours, unit));
      return [what, ...figures, factor(rise), `${mostRise} x`, rise <= mostRise ? 'within' : 'above'];
    }
    const verdict = rows.every(isWithin) ? 'within' : 'above';
    return [what, ...rows.map(({ ratio }) => factor(ratio)), none, `${target} x`, verdict];
  });
  const sizes = results.map(({ records }) => records.toLocaleString('en'));
  console.log('\nGrowth: the time of a call about a range of days, the ratio to its baseline of any other\n');
  console.log(markdown(['what', ...sizes, 'rise', 'at most', ''], lines));
}

const [command, ...words] = process.argv.slice(2);
if (command === 'table' && words.length > 2) {
  table(words[0], words[1], words.slice(2));
} else if (command === 'growth' && words.length > 1) {
  growth(words);
} else {
  console.error('usage: node scripts/bench-report.mjs table RESULT RECORDS MEASUREMENTS...');
  console.error('       node scripts/bench-report.mjs growth RESULT RESULT...');
  process.exit(2);
}
