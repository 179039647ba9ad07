<?xml version="1.0" encoding="UTF-8"?>
<profile id="wlan-2g4" showInChannelList="1">
  <label lang="en">WLAN 2.4 GHz</label>
  <label lang="de">WLAN 2,4 GHz</label>
  <description lang="en">Channels 1 to 13 on a raster of 5 MHz and channel 14, each 22 MHz wide (DSSS). Source: IEEE 802.11.</description>
  <description lang="de">Kanäle 1 bis 13 im Raster von 5 MHz und Kanal 14, jeder 22 MHz breit (DSSS). Quelle: IEEE 802.11.</description>
  <begin>2400 MHz</begin>
  <end>2497 MHz</end>
  <channels>
    <range label="Channels 1-13" type="provider" selectable="1">
      <begin>2400 MHz</begin>
      <end>2483.5 MHz</end>
      <color>#5c9ead</color>
      <comment>Channels 12 and 13 are not in use everywhere</comment>
      <!-- 22 MHz wide, 5 MHz apart: each channel overlaps the next by 17 MHz. -->
      <channels start="2401 MHz" width="22 MHz" space="-17 MHz" first="1" count="13"/>
    </range>
    <range label="Japan" type="provider" selectable="1">
      <begin>2471 MHz</begin>
      <end>2497 MHz</end>
      <color>#a05c7b</color>
      <comment>Channel 14 lies 12 MHz above channel 13. Japan only, DSSS only</comment>
      <channels start="2473 MHz" width="22 MHz" first="14" count="1"/>
    </range>
  </channels>
</profile>
