<?xml version="1.0" encoding="UTF-8"?>
<profile id="lte-band-20" showInChannelList="1">
  <label lang="en">LTE band 20 (800 MHz)</label>
  <label lang="de">LTE-Band 20 (800 MHz)</label>
  <description lang="en">Six blocks of 5 MHz, numbered upwards; uplink 832 to 862 MHz, downlink 791 to 821 MHz. Source: 3GPP TS 36.101; ECC/DEC/(09)03.</description>
  <description lang="de">Sechs Blöcke zu 5 MHz, aufwärts gezählt; Aufwärtsstrecke 832 bis 862 MHz, Abwärtsstrecke 791 bis 821 MHz. Quelle: 3GPP TS 36.101; ECC/DEC/(09)03.</description>
  <begin>791 MHz</begin>
  <end>862 MHz</end>
  <channels>
    <!-- The range is the uplink. In this band it lies above the downlink, so the mirror's distance is negative. -->
    <range label="Band 20" type="direction" selectable="1">
      <begin>832 MHz</begin>
      <end>862 MHz</end>
      <color>#1f9e89</color>
      <comment>Upper band: mobile to base, lower band: base to mobile</comment>
      <channels start="832 MHz" width="5 MHz" first="1" count="6"/>
      <mirror>-41 MHz</mirror>
    </range>
  </channels>
</profile>
