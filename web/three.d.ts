/** three.js, which the page holds before our script. Its classes come without types. */
declare const THREE: any;
