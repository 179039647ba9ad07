<?xml version="1.0" encoding="UTF-8"?>
<profile id="bluetooth-le" showInChannelList="1">
  <label lang="en">Bluetooth Low Energy</label>
  <label lang="de">Bluetooth Low Energy</label>
  <description lang="en">40 channels of 2 MHz by their channel index. Source: Bluetooth Core Specification, Volume 6.</description>
  <description lang="de">40 Kanäle zu 2 MHz nach ihrem Kanalindex. Quelle: Bluetooth Core Specification, Volume 6.</description>
  <begin>2400 MHz</begin>
  <end>2483.5 MHz</end>
  <channels>
    <!-- The advertising channels are spread over the band, away from the centres of WLAN channels 1, 6 and 11. -->
    <range label="Advertising" type="provider" selectable="1">
      <begin>2401 MHz</begin>
      <end>2481 MHz</end>
      <color>#d1495b</color>
      <channels start="2401 MHz" width="2 MHz" first="37" count="1"/>
      <channels start="2425 MHz" width="2 MHz" first="38" count="1"/>
      <channels start="2479 MHz" width="2 MHz" first="39" count="1"/>
    </range>
    <range label="Data" type="provider" selectable="1">
      <begin>2403 MHz</begin>
      <end>2479 MHz</end>
      <color>#30638e</color>
      <channels start="2403 MHz" width="2 MHz" first="0" count="11"/>
      <channels start="2427 MHz" width="2 MHz" first="11" count="26"/>
    </range>
  </channels>
</profile>
