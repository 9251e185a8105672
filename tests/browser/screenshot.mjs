// The top of a page as a picture: screenshot.mjs PAGE PICTURE

import {resolve} from "node:path";

import {chromium} from "playwright-core";

const [page, picture] = process.argv.slice(2);
const browser = await chromium.launch(
  {executablePath: process.env.CHROMIUM, args: ["--no-sandbox"]});
try {
  const tab = await browser.newPage({viewport: {width: 1000, height: 1480}});
  await tab.goto(`file://${resolve(page)}`);
  await tab.screenshot({path: picture});
} finally {
  await browser.close();
}
