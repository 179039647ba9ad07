<?xml version="1.0" encoding="UTF-8"?>
<profile id="lpd433" showInChannelList="1">
  <label lang="en">LPD433 (433 MHz ISM band)</label>
  <label lang="de">LPD433 (ISM-Band 433 MHz)</label>
  <description lang="en">The 69 channels of 25 kHz usual in handheld radios, 433.075 to 434.775 MHz, in the band 433.05 to 434.79 MHz. Source of the band: ERC Recommendation 70-03, Annex 1.</description>
  <description lang="de">Die 69 in Handfunkgeräten üblichen Kanäle zu 25 kHz, 433,075 bis 434,775 MHz, im Band 433,05 bis 434,79 MHz. Quelle des Bandes: ERC Recommendation 70-03, Annex 1.</description>
  <begin>433.05 MHz</begin>
  <end>434.79 MHz</end>
  <channels>
    <color>#b5651d</color>
    <channels start="433.0625 MHz" width="25 kHz" first="1" count="69"/>
  </channels>
</profile>
