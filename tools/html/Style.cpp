// SPDX-License-Identifier: MIT
//
// The style in three parts: colours, the page, pictures. Words have at least 4.5 times the
// brightness of what is below them, or the other way round (WCAG 2.2, 1.4.3).

#include "tools/html/Style.h"

namespace tool {

const char* const kHtmlStyle = R"css(
:root {
  color-scheme: light dark;
  --page: #f4f5f7; --card: #ffffff; --line: #d8dce2; --text: #1c2430; --soft: #566072;
  --link: #0b5cad; --ink: #1c2430;
  --good: #1a6b34; --good-card: #e5f4e9; --good-zone: #6fbf86;
  --warning: #7d4a00; --warning-card: #fdf0d5; --warning-zone: #f0b541;
  --bad: #a61b1b; --bad-card: #fde8e8; --bad-zone: #e2645f;
  --unknown: #5b3f9e; --unknown-card: #eee9fb; --unknown-zone: #a893e0;
  --board: #2f7d55; --chip: #1d2733; --contacts: #d9a93b;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #12161c; --card: #1b212a; --line: #343d4a; --text: #e4e8ee; --soft: #a3aebd;
    --link: #7ab8ff; --ink: #f4f6f9;
    --good: #7ddb98; --good-card: #17301f; --good-zone: #3f9a5b;
    --warning: #f3c25c; --warning-card: #392a0c; --warning-zone: #c58a1c;
    --bad: #ff9d98; --bad-card: #36181a; --bad-zone: #c94b46;
    --unknown: #c5b3ff; --unknown-card: #2a2245; --unknown-zone: #7f68c4;
    --board: #2b6e4c; --chip: #0c1116; --contacts: #c99a34;
  }
}
)css"
                               R"css(
* { box-sizing: border-box; }
body {
  margin: 0; background: var(--page); color: var(--text);
  font: 16px/1.5 system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", "DejaVu Sans", sans-serif;
}
header, nav, main, footer { max-width: 72rem; margin: 0 auto; padding: 0 1.25rem; }
header { padding-top: 2rem; }
h1 { margin: 0; font-size: 1.9rem; line-height: 1.2; }
h2 { margin: 0 0 .75rem; font-size: 1.25rem; }
h3 { margin: 0; font-size: 1rem; overflow-wrap: anywhere; }
header p, footer p, .note { color: var(--soft); }
header p { margin: .25rem 0 0; }
.note { margin: .75rem 0 0; font-size: .9rem; }
nav ul { display: flex; flex-wrap: wrap; gap: .25rem 1rem; list-style: none; margin: 1rem 0; padding: 0; }
a { color: var(--link); }
:focus-visible { outline: 3px solid var(--link); outline-offset: 2px; }
section {
  background: var(--card); border: 1px solid var(--line); border-radius: .75rem;
  padding: 1.25rem; margin: 0 0 1.25rem;
}
.verdict { border-left-width: .5rem; }
.verdict.good { border-left-color: var(--good); background: var(--good-card); }
.verdict.warning { border-left-color: var(--warning); background: var(--warning-card); }
.verdict.bad { border-left-color: var(--bad); background: var(--bad-card); }
.verdict.unknown { border-left-color: var(--unknown); background: var(--unknown-card); }
.verdict h2 { font-size: 1.6rem; margin: 0; }
.verdict.good h2 { color: var(--good); }
.verdict.warning h2 { color: var(--warning); }
.verdict.bad h2 { color: var(--bad); }
.verdict.unknown h2 { color: var(--unknown); }
.verdict p { margin: .25rem 0 0; }
.faults { margin: .75rem 0 0; padding: 0; list-style: none; }
.faults li { padding: .3rem 0; }
.mark {
  display: inline-block; padding: 0 .5rem; border-radius: .4rem; font-size: .875rem; font-weight: 600;
  border: 1px solid currentColor; white-space: nowrap;
}
.mark.good { color: var(--good); background: var(--good-card); }
.mark.warning { color: var(--warning); background: var(--warning-card); }
.mark.bad { color: var(--bad); background: var(--bad-card); }
.mark.unknown { color: var(--unknown); background: var(--unknown-card); }
.mark.plain { color: var(--soft); background: var(--card); }
.facts { display: grid; grid-template-columns: repeat(auto-fill, minmax(15rem, 1fr)); gap: .75rem 1.5rem; margin: 0; }
dt { color: var(--soft); font-size: .875rem; }
dd { margin: 0; overflow-wrap: anywhere; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; font-size: .9rem; }
* + .wide { margin-top: 1rem; }
caption { text-align: left; color: var(--soft); padding-bottom: .25rem; }
th, td { text-align: left; vertical-align: top; padding: .35rem .75rem .35rem 0; border-bottom: 1px solid var(--line); }
tbody tr:last-child > * { border-bottom: 0; }
th { font-weight: 600; }
th.number, td.number { padding-right: 1.5rem; }
.number { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
code { font-family: ui-monospace, "DejaVu Sans Mono", Menlo, Consolas, monospace; font-size: .9em; }
footer { padding-bottom: 2rem; font-size: .9rem; }
)css"
                               R"css(
.gauges, .slots { display: grid; gap: 1rem; list-style: none; margin: 0; padding: 0; }
.gauges { grid-template-columns: repeat(auto-fill, minmax(16.5rem, 1fr)); }
.slots { grid-template-columns: repeat(auto-fill, minmax(13rem, 1fr)); }
* + .gauges, * + .slots { margin-top: 1rem; }
h2 + .gauges, h2 + .slots { margin-top: 0; }
.gauges > li { border: 1px solid var(--line); border-radius: .6rem; padding: .75rem .9rem .4rem; }
.gauges > .warning { border-color: var(--warning); }
.gauges > .bad { border-color: var(--bad); }
.gauges > .unknown { border-color: var(--unknown); }
.head { display: flex; justify-content: space-between; gap: .75rem; }
.gauges p { margin: 0; }
.place, .details, .names, .id { color: var(--soft); font-size: .875rem; }
.reading { font-size: 1.35rem; font-weight: 600; font-variant-numeric: tabular-nums; }
figure { margin: 0; }
svg { display: block; width: 100%; height: auto; }
.zone.good { fill: var(--good-zone); }
.zone.warning { fill: var(--warning-zone); }
.zone.bad { fill: var(--bad-zone); }
.limit { stroke: var(--ink); stroke-width: 1; }
.label { fill: var(--soft); font-size: 11px; text-anchor: middle; }
.pointer { fill: var(--ink); stroke: var(--card); stroke-width: 2.5; paint-order: stroke; }
.module .board { fill: var(--board); }
.module.empty .board { fill: none; stroke: var(--soft); stroke-width: 2; stroke-dasharray: 6 4; }
.chip { fill: var(--chip); }
.contacts { stroke: var(--contacts); stroke-width: 8; }
figcaption { display: flex; flex-wrap: wrap; gap: 0 .5rem; align-items: baseline; margin-top: .35rem; }
figcaption .details { flex-basis: 100%; overflow-wrap: anywhere; }
.tree .bus { margin: 0; font-weight: 600; }
.tree .bus:not(:first-child) { margin-top: .75rem; }
.tree ul { list-style: none; margin: 0; padding-left: 1.5rem; }
.tree li { position: relative; padding: .3rem 0 0; }
.tree li::before, .tree li::after { content: ""; position: absolute; left: -1rem; border: 0 solid var(--soft); }
.tree li::before { top: 0; height: 1.35rem; width: .9rem; border-width: 0 0 2px 2px; border-bottom-left-radius: .4rem; }
.tree li:not(:last-child)::after { top: 0; bottom: 0; border-left-width: 2px; }
.function {
  display: inline-flex; flex-wrap: wrap; gap: 0 .6rem; align-items: baseline; max-width: 100%;
  border: 1px solid var(--line); border-radius: .5rem; padding: .2rem .6rem; background: var(--page);
}
.names { overflow-wrap: anywhere; }
.shares { list-style: none; margin: 0; padding: 0; display: grid; gap: .4rem; max-width: 36rem; }
.shares li { display: grid; grid-template-columns: 8rem 1fr 4rem; gap: .75rem; align-items: center; }
.share { height: .9rem; }
.share .all { fill: var(--line); }
.share .used { fill: var(--link); }
@media (max-width: 48rem) { .many { min-width: 44rem; } }
@media print {
  :root {
    --page: #ffffff; --card: #ffffff; --line: #b8bec8; --text: #000000; --soft: #444444; --link: #000000; --ink: #000000;
    --good: #14562a; --good-card: #ffffff; --good-zone: #6fbf86;
    --warning: #6b3f00; --warning-card: #ffffff; --warning-zone: #f0b541;
    --bad: #8d1414; --bad-card: #ffffff; --bad-zone: #e2645f;
    --unknown: #4a3385; --unknown-card: #ffffff; --unknown-zone: #a893e0;
    --board: #2f7d55; --chip: #1d2733; --contacts: #d9a93b;
  }
  body { font-size: 10.5pt; print-color-adjust: exact; -webkit-print-color-adjust: exact; }
  header, nav, main, footer { max-width: none; padding-left: 0; padding-right: 0; }
  nav { display: none; }
  section { border-radius: 0; border-width: 1px 0 0; padding: .75rem 0; margin: 0; }
  .verdict { border-left-width: .5rem; padding-left: .75rem; }
  h2, caption { break-after: avoid; }
  li, tr, figure, .facts div { break-inside: avoid; }
  .wide { overflow: visible; }
  .many { min-width: 0; }
  .gauges { grid-template-columns: repeat(3, 1fr); }
  .slots { grid-template-columns: repeat(4, 1fr); }
}
)css";

}  // namespace tool
