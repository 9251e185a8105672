// The walks whose pages are looked at, the pages, and the figures that they are to show.

import {execFileSync} from "node:child_process";
import {cpSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, renameSync, writeFileSync} from
  "node:fs";
import {tmpdir} from "node:os";
import {basename, join} from "node:path";

const program = process.env.GAIT_PROGRAM;
const makeWalk = process.env.GAIT_MAKE_WALK;
const examples = process.env.GAIT_EXAMPLES;
const realWalks = process.env.GAIT_REAL_WALKS;
/** Whether every walk is looked at, or those that show most. */
export const all = process.env.GAIT_BROWSER_TESTS === "all";

const work = mkdtempSync(join(tmpdir(), "gait-pages-"));

export const hostileText = "</script><script>alert(1)</script><img src=x onerror=alert(2)>" +
  "\"'&amp;{{name}}{{{json}}}]]>\u2028\u202e\ufffe";

/** Runs the program; a walk with findings is none that fails. */
export function run(...args) {
  return execFileSync(program, args, {maxBuffer: 2 ** 28, stdio: ["ignore", "pipe", "ignore"]});
}

function made(name, ...settings) {
  const folder = join(work, name);
  execFileSync(makeWalk, [...settings.map(String), folder], {stdio: "ignore"});
  return folder;
}

/** An example walk whose every text is meant to break out of the page. */
function hostileWalk() {
  const folder = join(work, "hostile");
  cpSync(join(examples, "two_feet_turn"), folder, {recursive: true});
  const reasons = join(folder, "exclusions.csv");
  const cell = `"${hostileText.replaceAll("\"", "\"\"")}"`;
  writeFileSync(reasons, readFileSync(reasons, "utf8").replaceAll(",turn", `,${cell}`));
  writeFileSync(join(folder, "about.csv"), `name,value\n${cell},${cell}\nnote,plain\n`);
  const named = join(work, "<script>alert(3)<\\script><img src=x onerror=alert(4)>&quot;{{id}}");
  renameSync(folder, named);
  return named;
}

function foldersOf() {
  const folders = readdirSync(examples).map((name) => join(examples, name));
  folders.push(hostileWalk(), made("one_stride", "--strides", 1, "--turns", 0),
    made("pauses", "--strides", 60, "--pauses", 3, "--lost", 4, "--missing", 0.2));
  if (all) {
    folders.push(made("five_strides", "--strides", 5, "--turns", 0),
      made("left_alone", "--strides", 30, "--feet", "left"),
      made("strides_400", "--strides", 400, "--turns", 8, "--outliers", 5),
      made("strides_10000", "--strides", 10000, "--turns", 50, "--pauses", 5, "--lost", 10));
    for (const name of realWalks ? readdirSync(realWalks) : []) {
      folders.push(join(realWalks, name));
    }
  }
  return folders;
}

/** Every page with its walk's JSON, which is written apart from it. */
export function makePages() {
  return foldersOf().map((folder, number) => {
    const file = join(work, `page_${number}.html`);
    run("-o", file, folder);
    return {
      name: basename(folder),
      folder,
      file,
      url: `file://${file}`,
      json: JSON.parse(run("--format", "json", folder)).walks[0],
    };
  });
}

/** A page of several walks, and a folder of pages. */
export function makePageOfSeveral(pages) {
  const file = join(work, "several.html");
  run("-o", file, ...pages.map((page) => page.folder));
  return {file, url: `file://${file}`};
}

export function makeFolder(pages) {
  const folder = join(work, "pages");
  mkdirSync(folder, {recursive: true});
  run("-o", `${folder}/`, ...pages.map((page) => page.folder));
  return folder;
}
